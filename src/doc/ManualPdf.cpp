#include "ManualPdf.h"
#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontMetricsF>
#include <cmath>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

namespace {

constexpr int Dpi = 300;

struct Heading {
    int level;
    QString text;
};

// The chapters joined, and their headings of levels 1 and 2 in order.
QString joinChapters(const QStringList &files, QList<Heading> &headings, QString &error)
{
    QString all;
    for (const QString &path : files) {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) {
            error = QStringLiteral("cannot read %1").arg(path);
            return {};
        }
        const QString text = QString::fromUtf8(f.readAll());
        for (const QString &line : text.split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("# ")))
                headings.append({1, line.mid(2).trimmed()});
            else if (line.startsWith(QLatin1String("## ")))
                headings.append({2, line.mid(3).trimmed()});
        }
        all += text + QStringLiteral("\n\n");
    }
    return all;
}

// The contents as Markdown: one line a heading with its page (placeholders when pages is empty).
QString contents(const QList<Heading> &headings, const QList<int> &pages)
{
    QString md = QStringLiteral("# Inhalt\n\n");
    for (int i = 0; i < headings.size(); ++i) {
        const QString page = pages.isEmpty() ? QStringLiteral("000") : QString::number(pages.at(i));
        const QString indent = headings[i].level == 1 ? QString() : QStringLiteral("    ");
        md += QStringLiteral("%1%2 ... %3  \n").arg(indent, headings[i].level == 1 ? QStringLiteral("**%1**").arg(headings[i].text) : headings[i].text, page);
    }
    return md + QStringLiteral("\n");
}

class Manual {
public:
    Manual(QPdfWriter &writer, const QString &pictureDir) : m_writer(writer), m_pictureDir(pictureDir)
    {
        m_footer = Dpi * 2 / 5;   // a line for the page number
        m_page = QSizeF(writer.width(), writer.height() - m_footer);
    }

    // Lays out the Markdown on pages of the writer; false with error set when a picture is missing.
    bool layout(const QString &markdown, QString &error)
    {
        m_doc = std::make_unique<QTextDocument>();
        m_doc->documentLayout()->setPaintDevice(&m_writer);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPointSizeF(10);
        m_doc->setDefaultFont(font);
        m_doc->setDocumentMargin(0);
        m_doc->setBaseUrl(QUrl::fromLocalFile(m_pictureDir + QLatin1Char('/')));
        m_doc->setMarkdown(markdown, QTextDocument::MarkdownDialectGitHub);
        if (!fitPictures(error))
            return false;
        breakBeforeChapters();
        m_doc->setPageSize(m_page);
        keepHeadingsWithText();
        return true;
    }

    // The page (from 1) of each heading of levels 1 and 2 after the contents, in order.
    QList<int> headingPages() const
    {
        QList<int> pages;
        bool contentsSeen = false;
        for (QTextBlock b = m_doc->begin(); b.isValid(); b = b.next()) {
            const int level = b.blockFormat().headingLevel();
            if (level != 1 && level != 2)
                continue;
            if (!contentsSeen) {   // the first heading is the contents' own
                contentsSeen = true;
                continue;
            }
            const qreal y = m_doc->documentLayout()->blockBoundingRect(b).top();
            pages << int(y / m_page.height()) + 2;   // the title page comes first
        }
        return pages;
    }

    void print(QPainter &p, const QString &title, const QString &subtitle)
    {
        // Title page.
        QFont big(QStringLiteral("DejaVu Sans"));
        big.setPointSizeF(28);
        big.setBold(true);
        p.setFont(big);
        const QRectF upper(0, m_writer.height() / 4.0, m_writer.width(), m_writer.height() / 6.0);
        p.drawText(upper, Qt::AlignHCenter | Qt::AlignBottom, title);
        QFont small(QStringLiteral("DejaVu Sans"));
        small.setPointSizeF(13);
        p.setFont(small);
        p.drawText(QRectF(0, upper.bottom() + Dpi / 4.0, m_writer.width(), Dpi), Qt::AlignHCenter | Qt::AlignTop, subtitle);

        const int count = m_doc->pageCount();
        QFont foot(QStringLiteral("DejaVu Sans"));
        foot.setPointSizeF(8);
        for (int i = 0; i < count; ++i) {
            m_writer.newPage();
            p.save();
            p.translate(0, -i * m_page.height());
            QAbstractTextDocumentLayout::PaintContext ctx;
            ctx.clip = QRectF(0, i * m_page.height(), m_page.width(), m_page.height());
            p.setClipRect(ctx.clip);
            m_doc->documentLayout()->draw(&p, ctx);
            p.restore();
            p.setFont(foot);
            p.drawText(QRectF(0, m_page.height(), m_page.width(), m_footer), Qt::AlignHCenter | Qt::AlignBottom,
                       QStringLiteral("Seite %1").arg(i + 2));
        }
    }

private:
    // Pictures keep their size at screen resolution but never grow wider than the text.
    bool fitPictures(QString &error)
    {
        const qreal maxWidth = m_page.width() * 96.0 / Dpi;
        for (QTextBlock b = m_doc->begin(); b.isValid(); b = b.next()) {
            for (auto it = b.begin(); !it.atEnd(); ++it) {
                const QTextFragment f = it.fragment();
                if (!f.charFormat().isImageFormat())
                    continue;
                QTextImageFormat img = f.charFormat().toImageFormat();
                const QString path = QDir(m_pictureDir).filePath(img.name());
                const QImage picture(path);
                if (picture.isNull()) {
                    error = QStringLiteral("picture %1 missing").arg(path);
                    return false;
                }
                const qreal scale = std::min<qreal>(1.0, maxWidth / picture.width()) * 0.8;
                img.setWidth(picture.width() * scale);
                img.setHeight(picture.height() * scale);
                QTextCursor c(m_doc.get());
                c.setPosition(f.position());
                c.setPosition(f.position() + f.length(), QTextCursor::KeepAnchor);
                c.setCharFormat(img);
            }
        }
        return true;
    }

    // A heading near the foot of a page moves to the next one, so that it is never
    // left there without the text it heads.
    void keepHeadingsWithText()
    {
        const qreal room = QFontMetricsF(m_doc->defaultFont(), &m_writer).lineSpacing() * 5;
        for (QTextBlock b = m_doc->begin(); b.isValid(); b = b.next()) {
            if (b.blockFormat().headingLevel() == 0 || b.blockFormat().pageBreakPolicy() != QTextFormat::PageBreak_Auto)
                continue;
            const QRectF r = m_doc->documentLayout()->blockBoundingRect(b);
            const qreal pageEnd = (std::floor(r.top() / m_page.height()) + 1) * m_page.height();
            if (pageEnd - r.bottom() < room) {
                QTextCursor c(b);
                QTextBlockFormat f = b.blockFormat();
                f.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
                c.setBlockFormat(f);
                // The layout after a changed break is not redone by itself: the
                // blocks below would keep no height and never be drawn.
                m_doc->markContentsDirty(b.position(), m_doc->characterCount() - b.position());
            }
        }
    }

    void breakBeforeChapters()
    {
        bool first = true;
        for (QTextBlock b = m_doc->begin(); b.isValid(); b = b.next()) {
            if (b.blockFormat().headingLevel() != 1)
                continue;
            if (first) {
                first = false;
                continue;
            }
            QTextCursor c(b);
            QTextBlockFormat f = b.blockFormat();
            f.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            c.setBlockFormat(f);
        }
    }

    QPdfWriter &m_writer;
    QString m_pictureDir;
    std::unique_ptr<QTextDocument> m_doc;
    QSizeF m_page;
    int m_footer = 0;
};

}

QString writeManualPdf(const QStringList &chapterFiles, const QString &pictureDir, const QString &pdfPath)
{
    QList<Heading> headings;
    QString error;
    const QString body = joinChapters(chapterFiles, headings, error);
    if (!error.isEmpty())
        return error;

    QSaveFile out(pdfPath);
    if (!out.open(QIODevice::WriteOnly))
        return QStringLiteral("cannot write %1: %2").arg(pdfPath, out.errorString());
    QPdfWriter writer(&out);
    writer.setResolution(Dpi);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(22, 18, 20, 14), QPageLayout::Millimeter);
    writer.setTitle(QStringLiteral("ZOL – Benutzerhandbuch"));
    writer.setCreator(QStringLiteral("ZOL"));

    // Twice: the first layout finds the pages of the headings for the contents.
    Manual manual(writer, pictureDir);
    if (!manual.layout(contents(headings, {}) + body, error))
        return error;
    const QList<int> pages = manual.headingPages();
    if (!manual.layout(contents(headings, pages) + body, error))
        return error;

    QPainter painter(&writer);
    manual.print(painter, QStringLiteral("ZOL"), QStringLiteral("Benutzerhandbuch"));
    painter.end();
    if (!out.commit())
        return QStringLiteral("cannot write %1: %2").arg(pdfPath, out.errorString());
    return {};
}
