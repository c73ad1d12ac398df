#include "Commands.h"
#include "gui/core/GuiPresenter.h"
#include "gui/core/ProgramIcon.h"
#include "gui/core/WindowStart.h"
#include "zol/core/Messages.h"
#include "zol/core/Settings.h"
#include "zol/core/Startup.h"
#include <QApplication>
#include <QGuiApplication>
#include <QCommandLineParser>
#include <QDate>
#include <iostream>
#include <memory>

namespace {

int startWindows(const QString &dataDir, const QString &user)
{
    static GuiPresenter presenter;
    WindowStart start(dataDir, user);
    switch (start.run()) {
    case zol::Startup::Result::Started: break;
    case zol::Startup::Result::LoginCancelled: return zolapp::Exit::Done;
    case zol::Startup::Result::Failed: return zolapp::Exit::Fault;
    }
    return QApplication::exec();
}

}

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    QCommandLineParser parser;
    parser.setApplicationDescription(zolapp::usageText());
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption data(QStringLiteral("data"), QStringLiteral("Ordner der Datendatei"), QStringLiteral("DIR"));
    const QCommandLineOption user(QStringLiteral("user"), QStringLiteral("Benutzername"), QStringLiteral("NAME"));
    const QCommandLineOption settings(QStringLiteral("settings"), QStringLiteral("Datei der Benutzereinstellungen"),
                                      QStringLiteral("FILE"));
    const QCommandLineOption yes(QStringLiteral("yes"), QStringLiteral("Fragen mit Ja beantworten"));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Hilfe"));
    const QCommandLineOption version(QStringLiteral("version"), QStringLiteral("Version"));
    parser.addOptions({data, user, settings, yes, help, version});
    if (!parser.parse(arguments)) {
        std::cerr << qPrintable(parser.errorText()) << '\n' << qPrintable(zolapp::usageText());
        return zolapp::Exit::Usage;
    }
    if (parser.isSet(version)) {
        std::cout << "zol " << ZOL_VERSION_MAJOR << '.' << ZOL_VERSION_MINOR << '.' << ZOL_VERSION_PATCH << '\n';
        return zolapp::Exit::Done;
    }
    if (parser.isSet(help)) {
        std::cout << qPrintable(zolapp::usageText());
        return zolapp::Exit::Done;
    }
    if (parser.isSet(settings))
        zol::setSettingsFile(parser.value(settings));

    zolapp::CommandContext ctx;
    ctx.dataDir = parser.value(data);
    ctx.user = parser.isSet(user) ? parser.value(user) : qEnvironmentVariable("ZOL_USER");
    QStringList positional = parser.positionalArguments();
    // A batch command needs no display.
    std::unique_ptr<QCoreApplication> app;
    if (positional.isEmpty())
        app = std::make_unique<QApplication>(argc, argv);
    else if (positional.first() == QLatin1String("print")) {
        // PDF output lays out text with fonts: it needs a GUI application, but no screen.
        if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
            && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else
        app = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ZOL"));
    QCoreApplication::setApplicationVersion(
        QStringLiteral("%1.%2.%3").arg(ZOL_VERSION_MAJOR).arg(ZOL_VERSION_MINOR).arg(ZOL_VERSION_PATCH));
    if (positional.isEmpty()) {
        QApplication::setWindowIcon(programIcon());
        return startWindows(ctx.dataDir, ctx.user);
    }

    zolapp::installBatchPresenter(parser.isSet(yes));
    const QString command = positional.takeFirst();
    ctx.args = positional;
    ctx.yes = parser.isSet(yes);
    return zolapp::runCommand(command, ctx);
}
