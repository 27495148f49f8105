#include "instrumentlist.h"

#include "choices.h"
#include "instruments.h"
#include "text.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyledItemDelegate>

namespace qelworkbench {

using qel::devices::DeviceBroker;

namespace {

constexpr int margin = 8;
constexpr int markSize = 14;

// The mark of a state: colour and shape, for those who tell colours apart and those who do not.
void paintMark(QPainter *painter, const QRectF &place, const Instrument &instrument)
{
    const bool hasFailed = !instrument.problem().isEmpty() && !instrument.isBusy();
    painter->setPen(Qt::NoPen);
    const Instrument::State state = instrument.state();
    if (state == Instrument::NeedsUser) {
        painter->setBrush(QColor(0xf9, 0xa8, 0x25));
        const QPointF triangle[] = {QPointF(place.center().x(), place.top()), place.bottomRight(),
                                    place.bottomLeft()};
        painter->drawPolygon(triangle, 3);
    } else if (hasFailed) {
        painter->setBrush(QColor(0xd3, 0x2f, 0x2f));
        painter->drawRect(place.adjusted(1, 1, -1, -1));
    } else if (instrument.isBusy() || state == Instrument::Opening) {
        painter->setBrush(QColor(0x19, 0x76, 0xd2));
        const QPointF arrow[] = {place.topLeft(), QPointF(place.right(), place.center().y()),
                                 place.bottomLeft()};
        painter->drawPolygon(arrow, 3);
    } else if (state == Instrument::Ready) {
        painter->setBrush(QColor(0x2e, 0x7d, 0x32));
        painter->drawEllipse(place);
    } else {
        painter->setPen(QPen(QColor(0x80, 0x80, 0x80), 2));
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(place.adjusted(1, 1, -1, -1));
    }
}

// A card: the mark, the name, the serial, the state, and the progress of a run.
class Card : public QStyledItemDelegate
{
public:
    Card(const Instruments *instruments, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_instruments(instruments)
    { }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override
    {
        return {200, 4 * option.fontMetrics.lineSpacing() + 2 * margin + 10};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &given,
               const QModelIndex &index) const override
    {
        const Instrument *instrument = m_instruments->at(index.row());
        if (!instrument)
            return;
        QStyleOptionViewItem option = given;
        initStyleOption(&option, index);
        option.text.clear();
        option.widget->style()->drawControl(QStyle::CE_ItemViewItem, &option, painter,
                                            option.widget);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const bool isSelected = option.state & QStyle::State_Selected;
        const QColor ink =
            option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
        const int line = option.fontMetrics.lineSpacing();
        const QRect area = option.rect.adjusted(margin, margin, -margin, -margin);
        const QRectF mark(area.left(), area.top() + (line - markSize) / 2.0, markSize, markSize);
        if (isSelected) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(Qt::white);
            painter->drawRoundedRect(mark.adjusted(-3, -3, 3, 3), 3, 3);
        }
        paintMark(painter, mark, *instrument);

        painter->setPen(ink);
        const int left = area.left() + markSize + margin;
        const int width = area.right() - left;
        QFont bold = option.font;
        bold.setBold(true);
        painter->setFont(bold);
        painter->drawText(
            left, area.top(), width, line, Qt::AlignVCenter,
            QFontMetrics(bold).elidedText(instrument->info().name(), Qt::ElideRight, width));
        painter->setFont(option.font);
        const QString where = QStringLiteral("%1  ·  %2")
                                  .arg(instrument->info().serial(), instrument->info().location());
        painter->drawText(left, area.top() + line, width, line, Qt::AlignVCenter,
                          option.fontMetrics.elidedText(where, Qt::ElideRight, width));
        painter->drawText(QRect(left, area.top() + 2 * line, width, 2 * line),
                          Qt::AlignTop | Qt::TextWordWrap, Instruments::stateText(*instrument));
        if (instrument->isBusy() && instrument->progress() >= 0) {
            const QRectF bar(left, area.bottom() - 4, width, 5);
            QColor ground = ink;
            ground.setAlpha(50);
            painter->setPen(Qt::NoPen);
            painter->setBrush(ground);
            painter->drawRoundedRect(bar, 2, 2);
            painter->setBrush(isSelected ? ink : QColor(0x19, 0x76, 0xd2));
            painter->drawRoundedRect(
                QRectF(bar.topLeft(), QSizeF(bar.width() * instrument->progress(), bar.height())),
                2, 2);
        }
        painter->restore();
    }

private:
    const Instruments *m_instruments;
};

} // namespace

InstrumentList::InstrumentList(Instruments *instruments, QWidget *parent)
    : QListView(parent)
    , m_instruments(instruments)
{
    setObjectName(QStringLiteral("instruments"));
    setModel(instruments);
    setItemDelegate(new Card(instruments, this));
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMinimumWidth(220);
    connect(instruments, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int row) { choose(row); });
    connect(instruments, &Instruments::firstSearchOver, viewport(),
            [this] { viewport()->update(); });
    retranslate();
}

// An instrument is looked at without a click: the first, or among those that the first search finds
// the one that was last measured with. Those that arrive later pull nobody away.
void InstrumentList::choose(int row)
{
    const bool isLast =
        m_instruments->isFirstSearch() && choices::isLast(m_instruments->at(row)->info());
    if (!currentIndex().isValid() || isLast)
        setCurrentIndex(m_instruments->index(row));
    viewport()->update();
}

Instrument *InstrumentList::current() const
{
    return currentIndex().isValid() ? m_instruments->at(currentIndex().row()) : nullptr;
}

void InstrumentList::currentChanged(const QModelIndex &now, const QModelIndex &before)
{
    QListView::currentChanged(now, before);
    Q_EMIT currentInstrumentChanged();
}

void InstrumentList::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_instruments->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                     m_instruments->isFirstSearch()
                         ? text("qelworkbench-searching",
                                DeviceBroker::availableDrivers().join(QStringLiteral(", ")))
                         : text("qelworkbench-no-instruments"));
}

void InstrumentList::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QListView::changeEvent(event);
}

void InstrumentList::retranslate()
{
    setAccessibleName(text("qelworkbench-instruments"));
    viewport()->update();
}

} // namespace qelworkbench
