#pragma once
#include <QString>
#include <QStringList>

class QWidget;

namespace zolgui {

// The file dialogs of the windows, and showing a written file with the
// desktop's program for it. Window tests put a ScriptedFiles in place, so a
// command gets the names a user would pick without a dialog on screen.

// A name to write, proposed in the user's documents folder; empty: cancelled.
QString chooseSaveFile(QWidget *parent, const QString &caption, const QString &proposed, const QString &filter);
// An existing file to read; empty: cancelled.
QString chooseOpenFile(QWidget *parent, const QString &caption, const QString &filter);
// Opens the file with the desktop's program for it.
void showWithDesktop(const QString &path);

// While it lives, the dialogs hand out these names in order (an empty name is
// a Cancel, and so is running out) and record the proposed names they were
// asked with; files to be shown are recorded, not opened.
class ScriptedFiles {
public:
    explicit ScriptedFiles(QStringList names = {});
    ~ScriptedFiles();
    ScriptedFiles(const ScriptedFiles &) = delete;
    ScriptedFiles &operator=(const ScriptedFiles &) = delete;
    void add(const QString &name) { m_names << name; }
    QString next();
    QStringList proposed;   // what each dialog proposed ("" for an open dialog)
    QStringList shown;      // files handed to the desktop

private:
    QStringList m_names;
};

}
