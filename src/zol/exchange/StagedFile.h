#pragma once
#include <QString>

namespace zol {

// A file written beside its target under a temporary name and put in place
// by rename at the end, so a reader never sees half a file and a failed
// write leaves the target as it was. Without commit() the temporary file is
// removed again.
class StagedFile {
public:
    explicit StagedFile(const QString &target);
    ~StagedFile();
    StagedFile(const StagedFile &) = delete;
    StagedFile &operator=(const StagedFile &) = delete;

    QString target() const { return m_target; }
    QString tempPath() const { return m_temp; }
    // Renames the temporary file to the target, replacing it; a failure is fault 3051.
    void commit();

private:
    QString m_target;
    QString m_temp;
    bool m_done = false;
};

}
