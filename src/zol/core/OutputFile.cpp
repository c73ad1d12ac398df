#include "OutputFile.h"
#include "Messages.h"
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zol {

namespace {

QString shown(const QString &path) { return QDir::toNativeSeparators(path); }

QString systemError(int err) { return QString::fromLocal8Bit(std::strerror(err)); }

Fault cannotWrite(const QString &path, int err)
{
    return Fault(FaultNo::CannotWrite,
                 QStringLiteral("Die Datei '%1' kann nicht geschrieben werden: %2").arg(shown(path), systemError(err)));
}

bool statPath(const QString &path, struct stat &st)
{
    return ::stat(QFile::encodeName(path).constData(), &st) == 0;
}

// True when a descriptor of this process refers to the same file (device and
// inode), whatever name it was opened under.
bool heldOpen(const struct stat &target)
{
    const QDir fds(QStringLiteral("/proc/self/fd"));
    const QStringList entries = fds.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &e : entries) {
        struct stat st {};
        if (::stat(QFile::encodeName(fds.filePath(e)).constData(), &st) == 0 && S_ISREG(st.st_mode)
            && st.st_dev == target.st_dev && st.st_ino == target.st_ino)
            return true;
    }
    return false;
}

QString temporaryPrefix(const QString &target) { return target + QStringLiteral(".tmp-"); }

void syncFolder(const QString &dir)
{
    const int fd = ::open(QFile::encodeName(dir).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

// Gives `from` the name `to`; without `replace` an existing `to` stays as it is.
int renameFile(const QByteArray &from, const QByteArray &to, bool replace)
{
    if (replace)
        return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // A file system without the flag: a hard link refuses an existing name too.
    if (::link(from.constData(), to.constData()) != 0)
        return errno;
    ::unlink(from.constData());
    return 0;
}

}

bool isDataFileName(const QString &fileName)
{
    static const QRegularExpression re(QStringLiteral("^zol(_[0-9]{6})?\\.db(-wal|-shm|-journal)?$"),
                                       QRegularExpression::CaseInsensitiveOption);
    return re.match(fileName).hasMatch();
}

namespace {

QString refusalOf(const QString &target, bool dataFileNamesAllowed)
{
    const QString clean = QDir::cleanPath(QDir().absoluteFilePath(target));
    const QFileInfo fi(clean);
    QStringList names;
    if (!dataFileNamesAllowed)
        names << fi.fileName();
    if (fi.isSymLink())
        names << QFileInfo(fi.canonicalFilePath()).fileName() << QFileInfo(fi.symLinkTarget()).fileName();
    for (const QString &name : names) {
        if (isDataFileName(name)) {
            const bool copy = name.contains(QLatin1Char('_'));
            return (copy ? QStringLiteral("Die Datei '%1' ist eine Monatskopie der Datendatei und wird nicht "
                                          "überschrieben. Bitte wählen Sie einen anderen Dateinamen.")
                         : QStringLiteral("Die Datei '%1' ist die Datendatei von ZOL und wird nicht "
                                          "überschrieben. Bitte wählen Sie einen anderen Dateinamen."))
                .arg(shown(target));
        }
    }
    if (fi.isDir())
        return QStringLiteral("'%1' ist ein Ordner. Bitte geben Sie einen Dateinamen an.").arg(shown(target));
    struct stat st {};
    if (statPath(clean, st) && heldOpen(st))
        return QStringLiteral("Die Datei '%1' ist gerade geöffnet und wird nicht überschrieben. "
                              "Bitte wählen Sie einen anderen Dateinamen.")
            .arg(shown(target));
    return {};
}

}

QString outputRefusal(const QString &target) { return refusalOf(target, false); }

QString OutputFile::refusal() const { return refusalOf(m_target, m_kind == DataFile); }

std::function<void(OutputFile::Stage, const QString &)> &OutputFile::testHook()
{
    static std::function<void(Stage, const QString &)> h;
    return h;
}

void OutputFile::hook(Stage s)
{
    if (testHook())
        testHook()(s, m_target);
}

OutputFile::OutputFile(const QString &target, Replace replace, Kind kind)
    : m_target(QDir::cleanPath(QDir().absoluteFilePath(target))), m_replace(replace), m_kind(kind)
{
    if (const QString why = refusal(); !why.isEmpty())
        throw OutputRefused(why);
    if (replace == KeepExisting && QFileInfo::exists(m_target))
        throw OutputRefused(QStringLiteral("Die Datei '%1' existiert bereits.").arg(shown(m_target)), true);

    QByteArray name = QFile::encodeName(temporaryPrefix(m_target)) + "XXXXXX";
    const int fd = ::mkostemp(name.data(), O_CLOEXEC);
    if (fd < 0)
        throw cannotWrite(m_target, errno);
    // mkstemp makes the file private; an output gets the usual permissions.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd, 0666 & ~mask);
    ::close(fd);
    m_temporary = QFile::decodeName(name);
    try {
        hook(Stage::TemporaryCreated);
    } catch (...) {
        discard();
        throw;
    }
}

OutputFile::~OutputFile()
{
    if (!m_committed)
        discard();
}

QIODevice &OutputFile::device()
{
    if (!m_file) {
        m_file = std::make_unique<QFile>(m_temporary);
        if (!m_file->open(QIODevice::WriteOnly | QIODevice::Truncate))
            throw Fault(FaultNo::CannotWrite, QStringLiteral("Die Datei '%1' kann nicht geschrieben werden: %2")
                                                  .arg(shown(m_target), m_file->errorString()));
    }
    return *m_file;
}

void OutputFile::commit()
{
    if (m_committed)
        return;
    try {
        if (m_file && m_file->isOpen()) {
            if (!m_file->flush() || ::fsync(m_file->handle()) != 0)
                throw cannotWrite(m_target, errno);
            m_file->close();
        } else {
            const int fd = ::open(QFile::encodeName(m_temporary).constData(), O_RDONLY | O_CLOEXEC);
            if (fd < 0)
                throw cannotWrite(m_target, errno);
            const int rc = ::fsync(fd);
            const int err = errno;
            ::close(fd);
            if (rc != 0)
                throw cannotWrite(m_target, err);
        }
        hook(Stage::Synced);
        // Checked again: the target may have been opened since the output began.
        if (const QString why = refusal(); !why.isEmpty())
            throw OutputRefused(why);
        const int err = renameFile(QFile::encodeName(m_temporary), QFile::encodeName(m_target),
                                   m_replace == ReplaceExisting);
        if (err == EEXIST)
            throw OutputRefused(QStringLiteral("Die Datei '%1' existiert bereits.").arg(shown(m_target)), true);
        if (err != 0)
            throw cannotWrite(m_target, err);
    } catch (...) {
        discard();
        throw;
    }
    m_committed = true;
    m_temporary.clear();
    syncFolder(QFileInfo(m_target).absolutePath());
    hook(Stage::Renamed);
}

void OutputFile::discard()
{
    if (m_file)
        m_file->close();
    m_file.reset();
    if (!m_temporary.isEmpty())
        QFile::remove(m_temporary);
    m_temporary.clear();
}

QStringList OutputFile::leftovers(const QString &target)
{
    const QFileInfo fi(QDir::cleanPath(QDir().absoluteFilePath(target)));
    QStringList found;
    const QDir dir = fi.dir();
    // A database written under the temporary name may leave its journal beside it.
    const QString temporary = temporaryPrefix(fi.fileName()) + QStringLiteral("??????");
    const QStringList names = dir.entryList({temporary, temporary + QStringLiteral("-journal"),
                                             temporary + QStringLiteral("-wal"), temporary + QStringLiteral("-shm")},
                                            QDir::Files | QDir::Hidden | QDir::System | QDir::CaseSensitive);
    for (const QString &n : names)
        found << dir.filePath(n);
    return found;
}

void OutputFile::removeLeftovers(const QString &target)
{
    for (const QString &path : leftovers(target))
        QFile::remove(path);
}

OutputChoice chooseOutput(const QString &target)
{
    const QString refusal = outputRefusal(target);
    if (!refusal.isEmpty()) {
        ZeigeMeldung(refusal, Style::Exclamation);
        return OutputChoice::Refused;
    }
    if (!QFileInfo::exists(target))
        return OutputChoice::Write;
    const int answer = ZeigeMeldung(
        QStringLiteral("Die Datei '%1' existiert bereits. Soll sie ersetzt werden?").arg(shown(target)), Style::YesNo);
    return answer == Answer::Yes ? OutputChoice::Replace : OutputChoice::Declined;
}

}
