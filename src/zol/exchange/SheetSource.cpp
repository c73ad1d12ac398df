#include "TableReader.h"
#include "zol/core/Fault.h"
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <cmath>
#include <ixion/address.hpp>
#include <ixion/formula_result.hpp>
#include <ixion/model_context.hpp>
#include <orcus/orcus_ods.hpp>
#include <orcus/orcus_xlsx.hpp>
#include <orcus/spreadsheet/document.hpp>
#include <orcus/spreadsheet/factory.hpp>
#include <orcus/spreadsheet/sheet.hpp>

namespace zol {

namespace {

namespace ss = orcus::spreadsheet;

// A number as the exchange fields hold numbers: whole numbers without a
// fraction, others with the decimal comma.
QString numberText(double v)
{
    if (std::isfinite(v) && v == std::trunc(v) && std::fabs(v) < 1e15)
        return QString::number(qint64(v));
    return QString::number(v, 'g', 15).replace(QLatin1Char('.'), QLatin1Char(','));
}

class Workbook {
public:
    explicit Workbook(const QString &path) : doc(ss::range_size_t{1048576, 16384}), factory(doc)
    {
        const std::string file = QFile::encodeName(path).toStdString();
        try {
            if (QFileInfo(path).suffix().compare(QLatin1String("ods"), Qt::CaseInsensitive) == 0) {
                orcus::orcus_ods filter(&factory);
                filter.read_file(file);
            } else {
                orcus::orcus_xlsx filter(&factory);
                filter.read_file(file);
            }
        } catch (const std::exception &e) {
            throw Fault(FaultNo::NotADatabase, QStringLiteral("Die Datei %1 ist keine lesbare Tabellen-Datei oder sie "
                                                              "ist beschädigt: %2")
                                                   .arg(path, QString::fromUtf8(e.what())));
        }
    }
    QString text(ss::sheet_t sheet, ss::row_t row, ss::col_t col) const
    {
        const ixion::model_context &cx = doc.get_model_context();
        const ixion::abs_address_t a(sheet, row, col);
        switch (cx.get_celltype(a)) {
        case ixion::celltype_t::string: return QString::fromUtf8(cx.get_string_value(a));
        case ixion::celltype_t::numeric: return numberText(cx.get_numeric_value(a));
        case ixion::celltype_t::boolean: return cx.get_boolean_value(a) ? QStringLiteral("1") : QStringLiteral("0");
        case ixion::celltype_t::formula:
            try {
                const ixion::formula_result r = cx.get_formula_result(a);
                if (r.get_type() == ixion::formula_result::result_type::string)
                    return QString::fromStdString(r.get_string());
                if (r.get_type() == ixion::formula_result::result_type::value)
                    return numberText(r.get_value());
            } catch (const std::exception &) {
            }
            return {};
        default: return {};
        }
    }
    ss::document doc;
    ss::import_factory factory;
};

class SheetReader : public TableReader {
public:
    SheetReader(std::shared_ptr<Workbook> book, ss::sheet_t sheet, const SheetLayout &layout)
        : m_book(std::move(book)), m_sheet(sheet)
    {
        const ss::sheet *sh = m_book->doc.get_sheet(sheet);
        const ixion::abs_range_t range = sh->get_data_range();
        if (range.valid()) {
            m_first = range.first.row;
            m_last = range.last.row;
            m_lastCol = range.last.column;
        }
        // The head row counts when every name of the layout stands in it.
        QStringList head;
        for (int c = 0; m_first <= m_last && c <= m_lastCol; ++c)
            head << m_book->text(sheet, m_first, c).trimmed();
        bool headed = !layout.columns.isEmpty();
        for (const QString &name : layout.columns)
            headed = headed && head.contains(name, Qt::CaseInsensitive);
        if (headed) {
            for (int c = 0; c < head.size(); ++c)
                if (!head.at(c).isEmpty()) {
                    m_fields << SourceField{head.at(c), -1};
                    m_columns << c;
                }
            m_next = m_first + 1;
        } else {
            for (int c = 0; c < layout.columns.size(); ++c) {
                m_fields << SourceField{layout.columns.at(c), -1};
                m_columns << c;
            }
            m_next = m_first;
        }
    }
    QList<SourceField> fields() const override { return m_fields; }
    bool next(QStringList &values) override
    {
        values.resize(m_fields.size());
        // Empty rows (the blank one under the head row, gaps) are no records.
        while (m_next <= m_last) {
            const int row = m_next++;
            bool any = false;
            for (int i = 0; i < m_columns.size(); ++i) {
                values[i] = m_book->text(m_sheet, row, m_columns.at(i));
                any = any || !values.at(i).isEmpty();
            }
            if (any) {
                m_row = row + 1;
                return true;
            }
        }
        return false;
    }
    int rowNumber() const override { return m_row; }

private:
    std::shared_ptr<Workbook> m_book;
    ss::sheet_t m_sheet;
    QList<SourceField> m_fields;
    QList<int> m_columns;
    int m_first = 0, m_last = -1, m_lastCol = -1, m_next = 0, m_row = 0;
};

class SheetSource : public TableSource {
public:
    SheetSource(const QString &path, const SheetLayout &layout)
        : m_path(path), m_layout(layout), m_book(std::make_shared<Workbook>(path))
    {
        for (size_t i = 0; i < m_book->doc.get_sheet_count(); ++i) {
            const std::string_view n = m_book->doc.get_sheet_name(ss::sheet_t(i));
            m_tables << QString::fromUtf8(n.data(), qsizetype(n.size()));
        }
    }
    QString path() const override { return m_path; }
    QStringList tables() const override { return m_tables; }
    bool knowsSizes() const override { return false; }
    std::unique_ptr<TableReader> open(const QString &table) override
    {
        for (int i = 0; i < m_tables.size(); ++i)
            if (m_tables.at(i).compare(table, Qt::CaseInsensitive) == 0)
                return std::make_unique<SheetReader>(m_book, ss::sheet_t(i), m_layout);
        throwTableMissing(m_path, table);
    }

private:
    QString m_path;
    SheetLayout m_layout;
    std::shared_ptr<Workbook> m_book;
    QStringList m_tables;
};

}

std::unique_ptr<TableSource> openSheetSource(const QString &path, const SheetLayout &layout)
{
    return std::make_unique<SheetSource>(path, layout);
}

}
