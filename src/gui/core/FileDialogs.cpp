#include "FileDialogs.h"
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>
#include <QUrl>

namespace zolgui {

namespace {
ScriptedFiles *g_script = nullptr;
}

ScriptedFiles::ScriptedFiles(QStringList names) : m_names(std::move(names)) { g_script = this; }
ScriptedFiles::~ScriptedFiles() { g_script = nullptr; }

QString ScriptedFiles::next() { return m_names.isEmpty() ? QString() : m_names.takeFirst(); }

QString chooseSaveFile(QWidget *parent, const QString &caption, const QString &proposed, const QString &filter)
{
    if (g_script) {
        g_script->proposed << proposed;
        return g_script->next();
    }
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    // The program itself says whether a file exists already; the dialog doesn't ask.
    return QFileDialog::getSaveFileName(parent, caption, QDir(folder).filePath(proposed), filter, nullptr,
                                        QFileDialog::DontConfirmOverwrite);
}

QString chooseOpenFile(QWidget *parent, const QString &caption, const QString &filter)
{
    if (g_script) {
        g_script->proposed << QString();
        return g_script->next();
    }
    return QFileDialog::getOpenFileName(parent, caption,
                                        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), filter);
}

void showWithDesktop(const QString &path)
{
    if (g_script) {
        g_script->shown << path;
        return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

}
