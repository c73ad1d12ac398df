// zoldoc DOCS PICTURES PDF: takes the pictures of the windows into PICTURES and
// lays out the chapters DOCS/*.md (in the order of their names) as the manual PDF.
#include "ManualPdf.h"
#include "Screenshots.h"
#include "zol/core/Messages.h"
#include <QApplication>
#include <QDir>
#include <iostream>

namespace {
// No one answers while the pictures are taken: a message is noted and answered No (or OK).
class Unattended : public zol::MessagePresenter {
public:
    int present(const QString &text, int style) override
    {
        std::cerr << "zoldoc: message: " << qPrintable(text) << '\n';
        return (style & 0x0f) == 4 ? 7 : (style & 0x0f) == 1 ? 2 : 1;
    }
};
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ZOL"));
    const QStringList args = app.arguments();
    if (args.size() != 4) {
        std::cerr << "usage: zoldoc DOCS PICTURES PDF\n";
        return 2;
    }
    Unattended presenter;
    zol::installPresenter(&presenter);
    QString error = takeScreenshots(args.at(2));
    if (!error.isEmpty()) {
        std::cerr << "zoldoc: " << qPrintable(error) << '\n';
        return 3;
    }
    const QDir docs(args.at(1));
    QStringList chapters;
    for (const QString &name : docs.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name))
        chapters << docs.filePath(name);
    error = writeManualPdf(chapters, args.at(2), args.at(3));
    if (!error.isEmpty()) {
        std::cerr << "zoldoc: " << qPrintable(error) << '\n';
        return 3;
    }
    return 0;
}
