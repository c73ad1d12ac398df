#include "WindowRules.h"
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QLocale>
#include <QTranslator>

namespace zolgui {

namespace {

class TypedTextStays : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // A combo box made editable gets a line edit with an inline completer;
        // the line edit is polished before it is first shown, whenever the
        // combo became editable.
        if (event->type() == QEvent::Polish)
            if (auto *edit = qobject_cast<QLineEdit *>(watched))
                if (auto *combo = qobject_cast<QComboBox *>(edit->parent());
                    combo && combo->lineEdit() == edit && edit->completer())
                    combo->setCompleter(nullptr);
        return false;
    }
};

}

void installWindowRules()
{
    auto *app = qobject_cast<QApplication *>(QCoreApplication::instance());
    if (!app || app->property("zolWindowRules").toBool())
        return;
    app->setProperty("zolWindowRules", true);

    auto *qt = new QTranslator(app);
    if (qt->load(QLocale(QLocale::German, QLocale::Germany), QStringLiteral("qtbase"), QStringLiteral("_"),
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qt);
    else
        delete qt;

    app->installEventFilter(new TypedTextStays(app));
}

}
