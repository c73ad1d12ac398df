#pragma once
#include <QString>
#include <memory>

namespace zol {

class StagedFile;

// Writes an .xlsx workbook through libxlsxwriter in constant-memory mode:
// each row goes to disk as soon as the next row begins, so a sheet of a
// million rows costs no more memory than a sheet of ten.
//
// That mode asks rows in ascending order on one sheet at a time: a cell of
// a row above the current one, or of a sheet left behind, is lost. Sheets
// are added by name (at most 31 characters, none of []:*?/\). A sheet holds
// MaxRows rows; continuing on a further sheet is up to the caller.
//
// An empty text is no cell at all, so the sheet shows nothing there and a
// reader finds the cell empty. Rows and columns count from 0.
//
// The workbook is written under a temporary name beside the target and
// renamed at finish(); without finish() nothing reaches the target.
class XlsxWriter {
public:
    static constexpr int MaxRows = 1048576;
    static constexpr int MaxColumns = 16384;

    // A workbook that is to be read back by this program (liborcus) keeps its
    // texts in the shared-string table, which liborcus reads and the inline
    // strings of the constant-memory mode it doesn't: SharedStrings holds
    // the cells in memory until finish(), and takes rows in any order.
    enum Mode { ConstantMemory, SharedStrings };
    explicit XlsxWriter(const QString &path, Mode mode = ConstantMemory);
    ~XlsxWriter();
    XlsxWriter(const XlsxWriter &) = delete;
    XlsxWriter &operator=(const XlsxWriter &) = delete;

    // Adds a sheet and makes it the one written to.
    void addSheet(const QString &name);
    void writeText(int row, int column, const QString &text);
    void writeNumber(int row, int column, double value);
    void finish();

private:
    struct Book;
    void check(int error, const QString &what) const;
    std::unique_ptr<StagedFile> m_staged;
    std::unique_ptr<Book> m_book;
};

}
