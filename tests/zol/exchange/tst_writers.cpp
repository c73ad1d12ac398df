#include "support/TestSupport.h"
#include "zol/core/Fault.h"
#include "zol/core/Sql.h"
#include "zol/exchange/DbTableWriter.h"
#include "zol/exchange/SqliteFile.h"
#include "zol/exchange/XlsxWriter.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

using namespace zol;

namespace {

QString unzipped(const QString &xlsx, const QString &member)
{
    QProcess p;
    p.start(QStringLiteral("unzip"), {QStringLiteral("-p"), xlsx, member});
    p.waitForFinished();
    return QString::fromUtf8(p.readAllStandardOutput());
}

QStringList declaredTypes(const QSqlDatabase &db, const QString &table)
{
    QStringList out;
    QSqlQuery q = exec(db, QStringLiteral("SELECT name, type FROM pragma_table_info(?)"), {table});
    while (q.next())
        out << q.value(0).toString() + QLatin1Char(' ') + q.value(1).toString();
    return out;
}

}

class TestWriters : public QObject {
    Q_OBJECT
private slots:
    void dbTableKeepsFieldSizesAndRows();
    void dbTableReplacesOnlyItsTable();
    void dbTableRefusalLeavesTargetAsItWas_data();
    void dbTableRefusalLeavesTargetAsItWas();
    void cloneFieldsMirrorsTheSchema();
    void xlsxSheetsAndCells();
    void xlsxWithoutFinishWritesNothing();
};

void TestWriters::dbTableKeepsFieldSizesAndRows()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.db"));
    {
        DbTableWriter w(path, QStringLiteral("Tabelle"),
                        {{QStringLiteral("Satzart"), FieldType::Text, 1}, {QStringLiteral("Name"), FieldType::Text, 20},
                         {QStringLiteral("Zahl"), FieldType::Double, 0}},
                        {QStringLiteral("Satzart")});
        w.addRow({QStringLiteral("1"), QStringLiteral("Pumpe 'Süd'"), 2.5});
        w.addRow({QStringLiteral("2")});
        QVERIFY(!QFile::exists(path));   // nothing at the target before finish
        w.finish();
    }
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    SqliteFile f(path, SqliteFile::ReadOnly);
    QCOMPARE(declaredTypes(f.db(), QStringLiteral("Tabelle")),
             QStringList({"Satzart VARCHAR(1)", "Name VARCHAR(20)", "Zahl DOUBLE"}));
    QSqlQuery q = exec(f.db(), QStringLiteral("SELECT Satzart, Name, Zahl FROM Tabelle ORDER BY rowid"));
    QVERIFY(q.next());
    QCOMPARE(q.value(1).toString(), QStringLiteral("Pumpe 'Süd'"));
    QCOMPARE(q.value(2).toDouble(), 2.5);
    QVERIFY(q.next());
    QCOMPARE(q.value(0).toString(), QStringLiteral("2"));
    QVERIFY(!q.value(1).isNull());   // the empty text, as an empty cell of the old file
    QCOMPARE(q.value(1).toString(), QString());
    QVERIFY(!q.next());
}

void TestWriters::dbTableReplacesOnlyItsTable()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.db"));
    const QList<FieldDef> fields{{QStringLiteral("A"), FieldType::Text, 5}};
    for (const char *table : {"Eins", "Zwei"}) {
        DbTableWriter w(path, QString::fromLatin1(table), fields);
        w.addRow({QStringLiteral("alt")});
        w.finish();
    }
    QVERIFY(DbTableWriter::fileHasTable(path, QStringLiteral("Eins")));
    {
        DbTableWriter w(path, QStringLiteral("Eins"), fields);
        w.addRow({QStringLiteral("neu")});
        w.finish();
    }
    SqliteFile f(path, SqliteFile::ReadOnly);
    QCOMPARE(scalar(f.db(), QStringLiteral("SELECT group_concat(A) FROM Eins")).toString(), QStringLiteral("neu"));
    QCOMPARE(scalar(f.db(), QStringLiteral("SELECT group_concat(A) FROM Zwei")).toString(), QStringLiteral("alt"));
    QVERIFY(!DbTableWriter::fileHasTable(dir.filePath(QStringLiteral("none.db")), QStringLiteral("Eins")));
}

void TestWriters::dbTableRefusalLeavesTargetAsItWas_data()
{
    QTest::addColumn<QString>("satzart");
    QTest::addColumn<QString>("name");
    QTest::newRow("text one longer than its field") << "1" << "123456";
    QTest::newRow("required field empty") << "" << "ok";
}

void TestWriters::dbTableRefusalLeavesTargetAsItWas()
{
    QFETCH(QString, satzart);
    QFETCH(QString, name);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.db"));
    const QList<FieldDef> fields{{QStringLiteral("Satzart"), FieldType::Text, 1}, {QStringLiteral("Name"), FieldType::Text, 5}};
    {
        DbTableWriter w(path, QStringLiteral("T"), fields, {QStringLiteral("Satzart")});
        w.addRow({QStringLiteral("1"), QStringLiteral("12345")});   // exactly as long as the field
        w.finish();
    }
    {
        DbTableWriter w(path, QStringLiteral("T"), fields, {QStringLiteral("Satzart")});
        w.addRow({QStringLiteral("1"), QStringLiteral("neu")});
        QVERIFY_THROWS_EXCEPTION(Fault, w.addRow({satzart, name}));
    }
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("out.db")});
    SqliteFile f(path, SqliteFile::ReadOnly);
    QCOMPARE(scalar(f.db(), QStringLiteral("SELECT group_concat(Name) FROM T")).toString(), QStringLiteral("12345"));
}

void TestWriters::cloneFieldsMirrorsTheSchema()
{
    const QList<FieldDef> f = DbTableWriter::cloneFields(
        QStringLiteral("ProtokollKopf"), {QStringLiteral("FileIndex"), QStringLiteral("FileAbove"), QStringLiteral("Katalog")},
        QStringLiteral("Objekt_"), {{QStringLiteral("Text"), QStringLiteral("Name")}});
    QCOMPARE(f.size(), Schema::table(QStringLiteral("ProtokollKopf")).fields.size() - 3);
    QCOMPARE(f.first().name, QStringLiteral("Objekt_FileTyp"));
    QCOMPARE(f.at(1).name, QStringLiteral("Objekt_Name"));
    QCOMPARE(f.at(1).size, Schema::Size(QStringLiteral("ProtokollKopf"), QStringLiteral("Text")));
}

void TestWriters::xlsxSheetsAndCells()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.xlsx"));
    {
        XlsxWriter w(path);
        QVERIFY_THROWS_EXCEPTION(Fault, w.addSheet(QStringLiteral("a/b")));
        w.addSheet(QStringLiteral("ExportObjekte"));
        w.writeText(0, 0, QStringLiteral("Kopf"));
        w.writeText(2, 0, QStringLiteral("Pumpe 'Süd' & <1>"));
        w.writeText(2, 1, QString());
        w.writeNumber(2, 2, 12.5);
        w.addSheet(QStringLiteral("Zwei"));
        w.writeText(0, 0, QStringLiteral("x"));
        w.finish();
    }
    const QString workbook = unzipped(path, QStringLiteral("xl/workbook.xml"));
    QVERIFY(workbook.contains(QStringLiteral("name=\"ExportObjekte\"")));
    QVERIFY(workbook.contains(QStringLiteral("name=\"Zwei\"")));
    const QString sheet = unzipped(path, QStringLiteral("xl/worksheets/sheet1.xml"));
    // Constant-memory mode writes strings inline; the empty cell B3 is absent.
    QVERIFY(sheet.contains(QStringLiteral("<c r=\"A1\"")));
    QVERIFY(sheet.contains(QStringLiteral("Pumpe &apos;Süd&apos; &amp; &lt;1&gt;"))
            || sheet.contains(QStringLiteral("Pumpe 'Süd' &amp; &lt;1&gt;")));
    QVERIFY(!sheet.contains(QStringLiteral("r=\"B3\"")));
    QVERIFY(sheet.contains(QStringLiteral("<c r=\"C3\"><v>12.5</v>")));
    QVERIFY(!sheet.contains(QStringLiteral("r=\"A2\"")));
}

void TestWriters::xlsxWithoutFinishWritesNothing()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.xlsx"));
    {
        XlsxWriter w(path);
        w.addSheet(QStringLiteral("S"));
        w.writeText(0, 0, QStringLiteral("x"));
    }
    QVERIFY(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

QTEST_GUILESS_MAIN(TestWriters)
#include "tst_writers.moc"
