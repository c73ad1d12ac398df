#include "XlsxWriter.h"
#include "StagedFile.h"
#include "zol/core/Fault.h"
#include <QFile>
#include <QFileInfo>
#include <xlsxwriter.h>

namespace zol {

struct XlsxWriter::Book {
    lxw_workbook *workbook = nullptr;
    lxw_worksheet *sheet = nullptr;
    QByteArray path;
    QByteArray tmpdir;
};

XlsxWriter::XlsxWriter(const QString &path, Mode mode)
    : m_staged(std::make_unique<StagedFile>(path)), m_book(std::make_unique<Book>())
{
    m_book->path = QFile::encodeName(m_staged->tempPath());
    // Row data wait in temporary files beside the target, not in a possibly small /tmp.
    m_book->tmpdir = QFile::encodeName(QFileInfo(path).absolutePath());
    lxw_workbook_options options{};
    options.constant_memory = mode == ConstantMemory ? LXW_TRUE : LXW_FALSE;
    options.tmpdir = m_book->tmpdir.data();
    options.use_zip64 = LXW_TRUE;
    m_book->workbook = workbook_new_opt(m_book->path.constData(), &options);
    if (!m_book->workbook)
        throw Fault(FaultNo::CannotWrite, QStringLiteral("Die Datei %1 kann nicht geschrieben werden.").arg(path));
}

XlsxWriter::~XlsxWriter()
{
    if (m_book->workbook) {
        // Nothing can be discarded in libxlsxwriter: close writes the temporary
        // file, which the staged file then removes.
        workbook_close(m_book->workbook);
        m_book->workbook = nullptr;
    }
}

void XlsxWriter::check(int error, const QString &what) const
{
    if (error == LXW_NO_ERROR)
        return;
    throw Fault(FaultNo::General, QStringLiteral("%1: %2").arg(what, QString::fromUtf8(lxw_strerror(lxw_error(error)))));
}

void XlsxWriter::addSheet(const QString &name)
{
    const QByteArray n = name.toUtf8();
    check(workbook_validate_sheet_name(m_book->workbook, n.constData()), QStringLiteral("Tabellenblatt \"%1\"").arg(name));
    m_book->sheet = workbook_add_worksheet(m_book->workbook, n.constData());
    if (!m_book->sheet)
        throw Fault(FaultNo::General, QStringLiteral("Das Tabellenblatt \"%1\" kann nicht angelegt werden.").arg(name));
}

void XlsxWriter::writeText(int row, int column, const QString &text)
{
    if (text.isEmpty())
        return;
    const QByteArray utf8 = text.toUtf8();
    // The place of a fault is named only when there is one: a sheet of a million rows writes cells at speed.
    if (const lxw_error e = worksheet_write_string(m_book->sheet, lxw_row_t(row), lxw_col_t(column), utf8.constData(), nullptr))
        check(e, QStringLiteral("Zeile %1, Spalte %2").arg(row + 1).arg(column + 1));
}

void XlsxWriter::writeNumber(int row, int column, double value)
{
    if (const lxw_error e = worksheet_write_number(m_book->sheet, lxw_row_t(row), lxw_col_t(column), value, nullptr))
        check(e, QStringLiteral("Zeile %1, Spalte %2").arg(row + 1).arg(column + 1));
}

void XlsxWriter::finish()
{
    const lxw_error e = workbook_close(m_book->workbook);
    m_book->workbook = nullptr;
    check(e, QStringLiteral("Die Datei %1 kann nicht geschrieben werden").arg(m_staged->target()));
    m_staged->commit();
}

}
