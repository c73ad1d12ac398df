#include "ManualPdf.h"
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// The text of one page of a PDF, a line an entry, through poppler's pdftotext.
QStringList pageLines(const QString &pdf, int page)
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {"-f", QString::number(page), "-l", QString::number(page), pdf, "-"});
    p.waitForFinished();
    QStringList lines;
    for (const QString &line : QString::fromUtf8(p.readAllStandardOutput()).split('\n')) {
        if (!line.trimmed().isEmpty())
            lines << line.trimmed();
    }
    return lines;
}

int pageCount(const QString &pdf)
{
    QProcess p;
    p.start(QStringLiteral("pdfinfo"), {pdf});
    p.waitForFinished();
    const auto m = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(QString::fromUtf8(p.readAllStandardOutput()));
    return m.hasMatch() ? m.captured(1).toInt() : 0;
}

}

class TestManualPdf : public QObject {
    Q_OBJECT
private slots:
    // A manual long enough that its contents fill more than one page, with
    // sections of uneven length so that headings fall near page feet: no page
    // is left empty, and every heading stands on the page the contents name.
    void contentsAndPagesAgree()
    {
        if (QStandardPaths::findExecutable("pdftotext").isEmpty() || QStandardPaths::findExecutable("pdfinfo").isEmpty())
            QSKIP("poppler-utils missing");
        QTemporaryDir dir;
        QStringList files;
        const QString words = QStringLiteral("Die Arbeit wird nach dem Plan der Woche erledigt und zurückgemeldet. ");
        for (int chapter = 1; chapter <= 12; ++chapter) {
            QString md = QStringLiteral("# Kapitel %1\n\n").arg(chapter);
            for (int section = 1; section <= 7; ++section) {
                md += QStringLiteral("## Abschnitt %1.%2\n\n").arg(chapter).arg(section);
                const int paragraphs = 1 + (chapter * 7 + section * 3) % 5;
                for (int i = 0; i < paragraphs; ++i)
                    md += words.repeated(3 + (chapter + section + i) % 9) + QStringLiteral("\n\n");
            }
            const QString path = dir.filePath(QStringLiteral("%1.md").arg(chapter, 2, 10, QLatin1Char('0')));
            QFile f(path);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(md.toUtf8());
            files << path;
        }
        const QString pdf = dir.filePath("manual.pdf");
        QCOMPARE(writeManualPdf(files, dir.path(), pdf), QString());

        const int pages = pageCount(pdf);
        QVERIFY(pages > 20);
        QMap<QString, int> listed;   // heading -> page the contents name
        QMap<QString, int> found;    // heading -> page it stands on
        const QRegularExpression entry(QStringLiteral("^((?:Kapitel|Abschnitt) [\\d.]+) \\.\\.\\. (\\d+)$"));
        for (int page = 2; page <= pages; ++page) {
            const QStringList lines = pageLines(pdf, page);
            QVERIFY2(lines.size() > 1, qPrintable(QStringLiteral("page %1 is empty").arg(page)));
            QCOMPARE(lines.last(), QStringLiteral("Seite %1").arg(page));
            for (const QString &line : lines) {
                const auto m = entry.match(line);
                if (m.hasMatch())
                    listed[m.captured(1)] = m.captured(2).toInt();
                else if (line.startsWith(QLatin1String("Kapitel ")) || line.startsWith(QLatin1String("Abschnitt ")))
                    found[line] = page;
            }
        }
        QCOMPARE(listed.size(), 12 * 8);
        QCOMPARE(found.keys(), listed.keys());
        for (auto it = listed.cbegin(); it != listed.cend(); ++it)
            QCOMPARE(found.value(it.key()), it.value());
        QVERIFY(listed.value("Kapitel 1") > 3);   // the contents took more than one page
    }
};

QTEST_MAIN(TestManualPdf)
#include "tst_manualpdf.moc"
