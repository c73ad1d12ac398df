#pragma once
#include <QObject>

class QLineEdit;

namespace zolgui {

// Entering a text box selects its whole content, also when it is entered by
// a mouse click (which would otherwise place the cursor afterwards).
class SelectOnFocus : public QObject {
public:
    explicit SelectOnFocus(QObject *parent) : QObject(parent) {}
    static void install(QLineEdit *edit);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

}
