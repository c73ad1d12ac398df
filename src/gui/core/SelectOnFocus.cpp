#include "SelectOnFocus.h"
#include <QEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>

namespace zolgui {

void SelectOnFocus::install(QLineEdit *edit)
{
    edit->installEventFilter(new SelectOnFocus(edit));
}

bool SelectOnFocus::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        QPointer<QLineEdit> edit = qobject_cast<QLineEdit *>(watched);
        if (edit) {
            edit->selectAll();
            QTimer::singleShot(0, edit, [edit] {
                if (edit)
                    edit->selectAll();
            });
        }
    }
    return QObject::eventFilter(watched, event);
}

}
