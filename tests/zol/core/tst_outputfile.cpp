#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <sys/stat.h>

using namespace zol;
using zoltest::TempData;
using zoltest::fileBytes;

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// Everything in the folder but the data file and its journal files.
QStringList othersIn(const QString &dir)
{
    QStringList names = QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System);
    names.removeIf([](const QString &n) { return n.startsWith(QLatin1String("ZOL.db")); });
    return names;
}

struct HookReset {
    ~HookReset() { OutputFile::testHook() = nullptr; }
};

}

class TestOutputFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Which targets a user's output may have, in a data folder with an open
    // session, a monthly copy and a file the process holds open.
    void refusedTargets_data()
    {
        QTest::addColumn<QString>("target");   // relative to the data folder
        QTest::addColumn<QString>("refusedBecause");   // a word of the message, empty when allowed
        QTest::newRow("data file") << "ZOL.db" << "Datendatei";
        QTest::newRow("detour") << "unter/../ZOL.db" << "Datendatei";
        QTest::newRow("other case") << "zol.DB" << "Datendatei";
        QTest::newRow("journal") << "ZOL.db-wal" << "Datendatei";
        QTest::newRow("monthly copy") << "ZOL_202611.db" << "Monatskopie";
        QTest::newRow("future copy") << "ZOL_209912.db" << "Monatskopie";
        QTest::newRow("link to the data file") << "bericht.pdf.lnk" << "Datendatei";
        QTest::newRow("open file") << "offen.pdf" << "geöffnet";
        QTest::newRow("hard link to the open file") << "offen-link.pdf" << "geöffnet";
        QTest::newRow("folder") << "unter" << "Ordner";
        QTest::newRow("new pdf") << "bericht.pdf" << "";
        QTest::newRow("existing closed file") << "alt.pdf" << "";
        QTest::newRow("five digits") << "ZOL_20261.db" << "";
        QTest::newRow("non-ASCII digits") << QString::fromUtf8("ZOL_٢٠٢٦١١.db") << "";
        QTest::newRow("other database") << "Export.db" << "";
    }
    void refusedTargets()
    {
        QFETCH(QString, target);
        QFETCH(QString, refusedBecause);
        TempData d;
        const QDir dir(d.dir());
        QVERIFY(dir.mkdir(QStringLiteral("unter")));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("ZOL_202611.db")), "copy"));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("alt.pdf")), "old"));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("ZOL.db")), dir.filePath(QStringLiteral("bericht.pdf.lnk"))));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("offen.pdf")), "open"));
        QFile held(dir.filePath(QStringLiteral("offen.pdf")));
        QVERIFY(held.open(QIODevice::ReadOnly));
        QCOMPARE(::link(QFile::encodeName(held.fileName()).constData(),
                        QFile::encodeName(dir.filePath(QStringLiteral("offen-link.pdf"))).constData()),
                 0);

        const QString path = dir.filePath(target);
        const QByteArray before = fileBytes(path);
        const QString why = outputRefusal(path);
        if (refusedBecause.isEmpty()) {
            QVERIFY2(why.isEmpty(), qPrintable(why));
            return;
        }
        QVERIFY2(why.contains(refusedBecause), qPrintable(why));
        QVERIFY(why.contains(QDir::toNativeSeparators(path)));
        // Consent to replace changes nothing: the output is refused all the same.
        QVERIFY_THROWS_EXCEPTION(OutputRefused, (OutputFile{path, OutputFile::ReplaceExisting}));
        QCOMPARE(fileBytes(path), before);
        // A command asks nothing and shows the refusal.
        ScriptedPresenter msg;
        QCOMPARE(chooseOutput(path), OutputChoice::Refused);
        QCOMPARE(msg.texts(), QStringList{why});
        QCOMPARE(msg.lastStyle(), Style::Exclamation);
    }

    // Written through the device or through the path, the content appears
    // under the target's name only at commit, with the usual permissions.
    void commitWritesWhole_data()
    {
        QTest::addColumn<bool>("throughPath");
        QTest::newRow("device") << false;
        QTest::newRow("path") << true;
    }
    void commitWritesWhole()
    {
        QFETCH(bool, throughPath);
        QTemporaryDir dir;
        const QString target = dir.filePath(QStringLiteral("liste.xlsx"));
        const QByteArray content(100000, 'z');
        {
            OutputFile out(target);
            QVERIFY(QFile::exists(out.temporaryPath()));
            QCOMPARE(QFileInfo(out.temporaryPath()).absolutePath(), QFileInfo(target).absolutePath());
            if (throughPath)
                QVERIFY(writeFile(out.temporaryPath(), content));
            else
                QCOMPARE(out.device().write(content), qint64(content.size()));
            QVERIFY(!QFile::exists(target));
            out.commit();
            QVERIFY(out.committed());
        }
        QCOMPARE(fileBytes(target), content);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"liste.xlsx"});
        struct stat st {};
        QCOMPARE(::stat(QFile::encodeName(target).constData(), &st), 0);
        const mode_t mask = ::umask(0);
        ::umask(mask);
        QCOMPARE(st.st_mode & 0777, 0666 & ~mask);
    }

    // An output that ends early (no commit, a fault at a chosen stage) leaves
    // neither the target nor its temporary file; an existing file stays.
    void interruptedOutputLeavesNothing_data()
    {
        QTest::addColumn<int>("stage");   // -1: the writer gives up before commit
        QTest::addColumn<bool>("existing");
        QTest::newRow("no commit") << -1 << false;
        QTest::newRow("fault at creation") << int(OutputFile::Stage::TemporaryCreated) << false;
        QTest::newRow("fault before rename") << int(OutputFile::Stage::Synced) << false;
        QTest::newRow("fault before rename, file kept") << int(OutputFile::Stage::Synced) << true;
    }
    void interruptedOutputLeavesNothing()
    {
        QFETCH(int, stage);
        QFETCH(bool, existing);
        QTemporaryDir dir;
        const QString target = dir.filePath(QStringLiteral("woche.pdf"));
        if (existing)
            QVERIFY(writeFile(target, "old"));
        HookReset reset;
        OutputFile::testHook() = [stage](OutputFile::Stage s, const QString &) {
            if (int(s) == stage)
                throw Fault(FaultNo::CannotWrite, QStringLiteral("Datenträger voll"));
        };
        try {
            OutputFile out(target, OutputFile::ReplaceExisting);
            out.device().write("new");
            if (stage >= 0)
                out.commit();
            QVERIFY(stage < 0);
        } catch (const Fault &f) {
            QCOMPARE(f.description(), QStringLiteral("Datenträger voll"));
        }
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), existing ? 1 : 0);
        QCOMPARE(fileBytes(target), existing ? QByteArray("old") : QByteArray());
    }

    // An existing file is replaced only with consent; one that appears while
    // the output is written is kept too.
    void existingFiles()
    {
        QTemporaryDir dir;
        const QString target = dir.filePath(QStringLiteral("liste.pdf"));
        QVERIFY(writeFile(target, "old"));
        try {
            OutputFile out(target);
            QFAIL("an existing file needs consent");
        } catch (const OutputRefused &r) {
            QVERIFY(r.existingFile());
        }
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
        {
            OutputFile out(target, OutputFile::ReplaceExisting);
            out.device().write("new");
            out.commit();
        }
        QCOMPARE(fileBytes(target), QByteArray("new"));

        const QString late = dir.filePath(QStringLiteral("spaet.pdf"));
        OutputFile out(late);
        out.device().write("mine");
        QVERIFY(writeFile(late, "theirs"));
        QVERIFY_THROWS_EXCEPTION(OutputRefused, out.commit());
        QCOMPARE(fileBytes(late), QByteArray("theirs"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);

        ScriptedPresenter msg;
        msg.answer(Answer::No).answer(Answer::Yes);
        QCOMPARE(chooseOutput(target), OutputChoice::Declined);
        QCOMPARE(chooseOutput(target), OutputChoice::Replace);
        QCOMPARE(chooseOutput(dir.filePath(QStringLiteral("neu.pdf"))), OutputChoice::Write);
        QCOMPARE(msg.shown().size(), 2);
        QCOMPARE(msg.lastStyle(), Style::YesNo);
        QVERIFY(msg.lastText().contains(QDir::toNativeSeparators(target)));
    }

    // Leftovers of interrupted outputs are found by the target's name, with wildcards.
    void leftovers()
    {
        QTemporaryDir dir;
        const QDir d(dir.path());
        // A database written under the temporary name leaves its journal too.
        for (const char *name : {"ZOL_202610.db.tmp-a1b2c3", "ZOL_202611.db.tmp-XyZ123", "ZOL.db.tmp-000000",
                                 "ZOL_202611.db.tmp-XyZ123-journal", "ZOL_202611.db", "ZOL_202611.db.tmp-toolong1",
                                 "bericht.pdf.tmp-abcdef"})
            QVERIFY(writeFile(d.filePath(QLatin1String(name)), "x"));
        QCOMPARE(OutputFile::leftovers(d.filePath(QStringLiteral("ZOL_??????.db"))).size(), 3);
        OutputFile::removeLeftovers(d.filePath(QStringLiteral("ZOL_??????.db")));
        QCOMPARE(othersIn(dir.path()),
                 (QStringList{"bericht.pdf.tmp-abcdef", "ZOL_202611.db", "ZOL_202611.db.tmp-toolong1"}));
        QCOMPARE(OutputFile::leftovers(d.filePath(QStringLiteral("ZOL.db"))).size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestOutputFile)
#include "tst_outputfile.moc"
