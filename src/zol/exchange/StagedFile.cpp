#include "StagedFile.h"
#include "zol/core/Fault.h"
#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <cstdio>

namespace zol {

StagedFile::StagedFile(const QString &target) : m_target(target)
{
    const QFileInfo fi(target);
    m_temp = fi.absolutePath() + QLatin1String("/.") + fi.fileName() + QLatin1Char('.')
        + QUuid::createUuid().toString(QUuid::Id128).left(8) + QLatin1String(".tmp");
}

StagedFile::~StagedFile()
{
    if (!m_done)
        QFile::remove(m_temp);
}

void StagedFile::commit()
{
    // rename(2) replaces the target in one step; QFile::rename refuses an existing target.
    if (std::rename(QFile::encodeName(m_temp).constData(), QFile::encodeName(m_target).constData()) != 0)
        throw Fault(FaultNo::CannotWrite,
                    QStringLiteral("Die Datei %1 kann nicht geschrieben werden.").arg(m_target));
    m_done = true;
}

}
