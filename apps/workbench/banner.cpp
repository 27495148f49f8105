#include "banner.h"

#include "instrument.h"
#include "text.h"

#include <QtCore/QEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace qelworkbench {

Banner::Banner(QWidget *parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("banner"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    m_text->setObjectName(QStringLiteral("bannerText"));
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(m_text, 1);
    m_confirm = addButton("confirm", &Banner::confirmed);
    m_refuse = addButton("refuse", &Banner::refused);
    m_again = addButton("again", &Banner::againWanted);
    m_folder = addButton("otherFolder", &Banner::folderWanted);
    retranslate();
    showFor(nullptr);
}

QPushButton *Banner::addButton(const char *name, void (Banner::*signal)())
{
    auto *button = new QPushButton(this);
    button->setObjectName(QString::fromLatin1(name));
    connect(button, &QPushButton::clicked, this, signal);
    layout()->addWidget(button);
    return button;
}

void Banner::showFor(const Instrument *instrument)
{
    const bool asks = instrument && !instrument->action().isEmpty();
    const int unkept = instrument ? instrument->unkeptCount() : 0;
    QString message =
        asks ? instrument->action() : (instrument ? instrument->problem() : QString());
    if (!asks && unkept > 0)
        message += QLatin1Char(' ') + text("qelworkbench-unkept", QString::number(unkept));
    const bool canOpen = instrument && !instrument->isOpen() && !instrument->isBusy()
        && instrument->state() == Instrument::Closed;
    m_text->setText(message);
    setVisible(!message.isEmpty());
    m_confirm->setVisible(asks);
    m_refuse->setVisible(asks);
    m_again->setVisible(!asks && (unkept > 0 || canOpen));
    m_again->setText(text(unkept > 0 ? "qelworkbench-keep-again" : "qelworkbench-open-again"));
    m_folder->setVisible(!asks && unkept > 0);
    fitButtons();
    QPalette colors = parentWidget()->palette();
    const bool isDark = colors.color(QPalette::Window).lightness() < 128;
    colors.setColor(QPalette::Window,
                    asks ? (isDark ? QColor(0x5d, 0x45, 0x00) : QColor(0xff, 0xec, 0xb3))
                         : (isDark ? QColor(0x5c, 0x1f, 0x1f) : QColor(0xfd, 0xe0, 0xe0)));
    setPalette(colors);
}

void Banner::fitButtons()
{
    for (QPushButton *button : {m_confirm, m_refuse, m_again, m_folder})
        button->setMinimumWidth(fontMetrics().horizontalAdvance(button->text()) + 32);
}

void Banner::retranslate()
{
    m_confirm->setText(text("qelworkbench-confirm"));
    m_refuse->setText(text("qelworkbench-refuse"));
    m_folder->setText(text("qelworkbench-other-folder"));
    fitButtons();
}

void Banner::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QFrame::changeEvent(event);
}

} // namespace qelworkbench
