#include "frmMsgBoxHOV.h"
#include "ui_frmMsgBoxHOV.h"
#include "zol/core/Messages.h"
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QtMath>

namespace {
constexpr int TextWidth = 420;       // width of the text for short messages
constexpr int WideTextWidth = 640;   // for long ones, so they need fewer lines
constexpr int WideFromLines = 12;
constexpr int MinTextWidth = 200;
}

frmMsgBoxHOV::frmMsgBoxHOV(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::frmMsgBoxHOV>())
{
    ui->setupUi(this);
    setModal(true);
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    ui->imgInformation->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation, nullptr, this).pixmap(iconSize));
    ui->imgEmergency->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, this).pixmap(iconSize));
    ui->imgWarning->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(iconSize));
    ui->imgQuestion->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxQuestion, nullptr, this).pixmap(iconSize));

    connect(ui->cmdOkay, &QPushButton::clicked, this, [this] { answerWith(zol::Answer::Ok); });
    connect(ui->cmdCancelOkay, &QPushButton::clicked, this, [this] { answerWith(zol::Answer::Ok); });
    connect(ui->cmdCancelCancel, &QPushButton::clicked, this, [this] { answerWith(zol::Answer::Cancel); });
    connect(ui->cmdYNYes, &QPushButton::clicked, this, [this] { answerWith(zol::Answer::Yes); });
    connect(ui->cmdYNNo, &QPushButton::clicked, this, [this] { answerWith(zol::Answer::No); });
    setMessage(QString(), zol::Style::Information);
}

frmMsgBoxHOV::~frmMsgBoxHOV() = default;

void frmMsgBoxHOV::setMessage(const QString &text, int style)
{
    m_style = style;
    m_answer = zol::defaultAnswer(style);
    setWindowTitle(tr("ZOL"));
    ui->lblMessageText->setText(text);

    const bool okay = style == zol::Style::Information || style == zol::Style::Critical
        || style == zol::Style::Exclamation;
    ui->cmdOkay->setVisible(okay);
    ui->cmdCancelOkay->setVisible(style == zol::Style::OkCancel);
    ui->cmdCancelCancel->setVisible(style == zol::Style::OkCancel);
    ui->cmdYNYes->setVisible(style == zol::Style::YesNo);
    ui->cmdYNNo->setVisible(style == zol::Style::YesNo);
    ui->imgInformation->setVisible(style == zol::Style::Information);
    ui->imgEmergency->setVisible(style == zol::Style::Critical);
    ui->imgWarning->setVisible(style == zol::Style::Exclamation);
    ui->imgQuestion->setVisible(style == zol::Style::OkCancel || style == zol::Style::YesNo);

    // The OK/Cancel question offers no close button in the frame: Cancel is its button.
    Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    if (style != zol::Style::OkCancel)
        flags |= Qt::WindowCloseButtonHint;
    if (windowFlags() != flags) {
        const bool shown = isVisible();
        setWindowFlags(flags);
        if (shown)
            show();
    }

    QPushButton *first = okay ? ui->cmdOkay : style == zol::Style::OkCancel ? ui->cmdCancelOkay : ui->cmdYNYes;
    for (QPushButton *b : {ui->cmdOkay, ui->cmdCancelOkay, ui->cmdCancelCancel, ui->cmdYNYes, ui->cmdYNNo})
        b->setDefault(b == first);
    first->setFocus();
    sizeToText();
}

void frmMsgBoxHOV::sizeToText()
{
    // Measure the text at the narrow width; a long text gets the wide one. The
    // window then grows by whole lines up to most of the screen, and the text
    // scrolls beyond that.
    const QFontMetrics fm(ui->lblMessageText->font());
    const int lineHeight = qMax(1, fm.lineSpacing());
    int width = TextWidth;
    int textHeight = ui->lblMessageText->heightForWidth(width);
    if (textHeight / lineHeight > WideFromLines) {
        width = WideTextWidth;
        textHeight = ui->lblMessageText->heightForWidth(width);
    }
    int lines = qMax(1, qCeil(double(qMax(textHeight, lineHeight)) / lineHeight));
    // No wider than the wrapped text needs.
    const QString text = ui->lblMessageText->text();
    width = qBound(MinTextWidth,
                   fm.boundingRect(QRect(0, 0, width, 1 << 20), Qt::TextWordWrap, text).width() + 8, width);

    const QScreen *scr = screen();
    const int screenHeight = scr ? scr->availableGeometry().height() : 768;
    const int chrome = 120;   // image row margins and the button row
    const int maxLines = qMax(3, (screenHeight * 4 / 5 - chrome) / lineHeight);
    const bool scrolls = lines > maxLines;
    lines = qMin(lines, maxLines);
    const int iconHeight = ui->imgInformation->pixmap().height();
    const int areaHeight = qMax(lines * lineHeight + 4, iconHeight);
    const int scrollBar = scrolls ? ui->scrMessageText->verticalScrollBar()->sizeHint().width() : 0;
    ui->scrMessageText->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    ui->scrMessageText->setFixedSize(width + scrollBar + 4, areaHeight);
    layout()->activate();
    setFixedSize(sizeHint());
}

int frmMsgBoxHOV::zeig(const QString &text, int style)
{
    setMessage(text, style);
    exec();
    return m_answer;
}

void frmMsgBoxHOV::answerWith(int answer)
{
    m_answer = answer;
    done(answer);
}

void frmMsgBoxHOV::reject()
{
    if (m_style == zol::Style::OkCancel)
        return;
    answerWith(zol::defaultAnswer(m_style));
}
