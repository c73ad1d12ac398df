#pragma once
#include "zol/core/Database.h"
#include "zol/print/PrinterF.h"
#include <QTemporaryDir>
#include <memory>

namespace zoltest {

// A data folder of its own with a new data file (seeded, admin "Admin" with
// password "admin") and a settings file of its own, so no test touches the
// user's data or another test's.
class TempData {
public:
    explicit TempData(bool create = true);
    ~TempData();
    QString dir() const { return m_dir.path(); }
    zol::Database &db() { return *m_db; }
    QSqlDatabase sql() { return m_db->connection(); }
    // Closes and forgets the data file (lock released), e.g. to reopen it.
    void closeDatabase();
    void reopen();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<zol::Database> m_db;
};

// The text of a PDF file as pdftotext gives it (-layout keeps columns), with a
// form feed after every page; empty when the file can't be read.
QString pdfText(const QString &path, bool layout = true);

// Keeps the pages of a preview instead of showing the preview window.
struct RecordingPreview : zol::PreviewPresenter {
    RecordingPreview() { zol::installPreviewPresenter(this); }
    ~RecordingPreview() override { zol::installPreviewPresenter(nullptr); }
    void showPreview(zol::PrinterF &p) override
    {
        store = p.store();
        ++calls;
    }
    bool contains(const QString &text) const
    {
        for (const auto &pg : store.pages)
            for (const auto &it : pg.items)
                if (it.Text.contains(text))
                    return true;
        return false;
    }
    zol::PageStore store;
    int calls = 0;
};

// One member of a zip file (an .xlsx workbook) as text, as `unzip -p` gives it;
// empty when it can't be read.
QString zipMember(const QString &zipFile, const QString &member);

// The bytes of a file; empty when it can't be read.
QByteArray fileBytes(const QString &path);

// Number of rows of a table, optionally with a WHERE clause and bound values.
int countRows(const QSqlDatabase &db, const QString &table, const QString &where = {}, const QVariantList &values = {});

}
