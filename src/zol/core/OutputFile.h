#pragma once
#include "Fault.h"
#include <QFile>
#include <QString>
#include <functional>
#include <memory>

namespace zol {

// Every file the program writes for the user (PDF, exchange and statistics
// files, the monthly copy, a new data file) goes through OutputFile:
//
//   - The target is checked first: a data file (ZOL.db, its -wal/-shm/-journal
//     files, a monthly copy ZOL_yyyyMM.db, in any folder and under any
//     spelling of the path: "./x/../ZOL.db", a link) and any file this
//     process holds open are never written. The check raises OutputRefused.
//   - The content is written to a temporary file beside the target
//     ("<name>.tmp-XXXXXX"), made durable (fsync), and only then given the
//     target's name. An existing file is replaced only when the caller says
//     so (the user agreed); otherwise the rename refuses to overwrite. An
//     interrupted output never leaves a half file under the chosen name; a
//     failure or a destructor without commit() removes the temporary file.
//
// Code that writes the file itself uses device():
//
//     OutputFile out(path);                 // throws OutputRefused / Fault
//     out.device().write(bytes);
//     out.commit();                         // throws Fault (3051)
//
// Code that gets only a path (libxlsxwriter, a new SQLite file, VACUUM INTO,
// a PDF writer) writes to temporaryPath(), which exists as an empty file, and
// closes its own handle before commit():
//
//     OutputFile out(path, OutputFile::ReplaceExisting);
//     lxw_workbook *wb = workbook_new(qPrintable(out.temporaryPath()));
//     ... workbook_close(wb);
//     out.commit();
//
// Commands ask the user first through chooseOutput(), which shows the refusal
// or asks whether an existing file is to be replaced.

// An output the program must not write (data file, monthly copy, open file,
// existing file without consent, a folder). Shown in style 48; in a batch
// command it ends with status 2 (status 1 for a file the user kept).
class OutputRefused : public Fault {
public:
    explicit OutputRefused(QString description, bool existingFile = false)
        : Fault(FaultNo::CannotWrite, std::move(description)), m_existing(existingFile) {}
    // True when the only reason is that the file exists already.
    bool existingFile() const { return m_existing; }

private:
    bool m_existing;
};

// Why the path may not be written, or empty when it may. An existing file is
// no reason here (see OutputFile::Replace).
QString outputRefusal(const QString &target);

// True for the name of a data file or a monthly copy (and their journal files).
bool isDataFileName(const QString &fileName);

class OutputFile {
public:
    enum Replace { KeepExisting, ReplaceExisting };
    // A user's output may not bear a data file's name; the data store itself
    // writes its files (a new ZOL.db, the monthly copy) as DataFile.
    enum Kind { UserFile, DataFile };
    // The points at which the test hook is called.
    enum class Stage { TemporaryCreated, Synced, Renamed };

    explicit OutputFile(const QString &target, Replace replace = KeepExisting, Kind kind = UserFile);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    QString targetPath() const { return m_target; }
    QString temporaryPath() const { return m_temporary; }
    // The temporary file, open for writing.
    QIODevice &device();

    // Flushes and syncs the temporary file, gives it the target's name and
    // syncs the folder. Faults: 3051 when the file can't be completed, and
    // OutputRefused when the target appeared meanwhile and may not be replaced.
    void commit();
    bool committed() const { return m_committed; }
    // Removes the temporary file; nothing is written under the target's name.
    void discard();

    // Removes temporary files that an interrupted output of `target` left
    // behind. The file name may hold the wildcards ? and *, e.g. "ZOL_??????.db".
    static void removeLeftovers(const QString &target);
    // The temporary files of outputs to `target` that exist now (wildcards as above).
    static QStringList leftovers(const QString &target);

    // Tests interrupt an output here (a fault thrown, or the process killed).
    static std::function<void(Stage, const QString &target)> &testHook();

private:
    void hook(Stage s);
    QString refusal() const;

    QString m_target;
    QString m_temporary;
    Replace m_replace;
    Kind m_kind;
    std::unique_ptr<QFile> m_file;
    bool m_committed = false;
};

// For commands and windows before they write: shows the refusal in style 48,
// or, for an existing file, asks whether to replace it (Yes/No).
enum class OutputChoice { Write, Replace, Refused, Declined };
OutputChoice chooseOutput(const QString &target);

}
