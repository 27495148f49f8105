#include "plateview.h"

#include "text.h"

#include <qelfrontend/wells.h>

#include <QtGui/QHelpEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QAccessibleWidget>
#include <QtWidgets/QToolTip>

#include <algorithm>
#include <cmath>

namespace qelworkbench {

namespace {

// Tells a screen reader the well that is looked at and how many are selected.
class AccessiblePlate : public QAccessibleWidget
{
public:
    explicit AccessiblePlate(PlateView *view)
        : QAccessibleWidget(view, QAccessible::Table)
    { }

    QString text(QAccessible::Text kind) const override
    {
        const auto *view = static_cast<PlateView *>(widget());
        if (kind == QAccessible::Value)
            return view->wellText(view->currentWell());
        return QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *view = qobject_cast<PlateView *>(object);
    return view ? new AccessiblePlate(view) : nullptr;
}

} // namespace

PlateView::PlateView(QWidget *parent)
    : QWidget(parent)
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(&makeAccessible);
        return true;
    }();
    Q_UNUSED(isInstalled)
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PlateView::setPicture(const PlatePicture &picture)
{
    const bool isOtherSize = picture.rows != m_picture.rows || picture.columns != m_picture.columns;
    m_picture = picture;
    if (isOtherSize) {
        m_selection = QVector<bool>(picture.rows * picture.columns);
        m_hovered = m_frame = m_anchor = -1;
        m_isDragging = false;
        Q_EMIT selectionChanged();
    }
    update();
    announce();
    Q_EMIT pictureChanged();
}

const PlatePicture &PlateView::picture() const
{
    return m_picture;
}

const QVector<bool> &PlateView::selection() const
{
    return m_selection;
}

void PlateView::setSelection(const QVector<bool> &selection)
{
    if (selection == m_selection || selection.size() != m_selection.size())
        return;
    m_selection = selection;
    update();
    Q_EMIT selectionChanged();
}

int PlateView::currentWell() const
{
    return m_hovered >= 0 ? m_hovered : m_frame;
}

void PlateView::setCurrentWell(int well)
{
    m_frame = well < m_selection.size() ? well : -1;
    m_hovered = -1;
    update();
    announce();
}

QString PlateView::wellText(int well) const
{
    if (well < 0 || m_picture.columns < 1)
        return QString();
    const QString name =
        qel::frontend::wellName(well / m_picture.columns, well % m_picture.columns);
    if (m_picture.values.isEmpty())
        return name;
    const double value = m_picture.values.value(well, NAN);
    if (std::isnan(value))
        return text("qelworkbench-well-not-measured", name);
    const QString number = QStringLiteral("%1 %2").arg(valueText(value), m_picture.unit).trimmed();
    const QString content = m_picture.contents.value(well);
    QString fact = text("qelworkbench-well-value", name, number);
    if (m_picture.isSaturated(value))
        fact = m_picture.isDifference ? text("qelworkbench-well-no-difference", name)
                                      : text("qelworkbench-well-saturated", name, number);
    return content.isEmpty() ? fact : fact + QStringLiteral("  ·  ") + content;
}

QSize PlateView::sizeHint() const
{
    return {620, 420};
}

QSize PlateView::minimumSizeHint() const
{
    return {220, 110};
}

bool PlateView::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        auto *help = static_cast<QHelpEvent *>(event);
        const int well = m_picture.wellAt(help->pos(), rect());
        QToolTip::showText(help->globalPos(), wellText(well), this);
        return true;
    }
    return QWidget::event(event);
}

void PlateView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_picture.paint(&painter, rect(), palette(), m_selection, hasFocus() ? m_frame : -1);
}

QVector<bool> PlateView::rectangle(int from, int to) const
{
    QVector<bool> wells(m_selection.size());
    const int columns = m_picture.columns;
    const auto [top, bottom] = std::minmax({from / columns, to / columns});
    const auto [left, right] = std::minmax({from % columns, to % columns});
    for (int row = top; row <= bottom; ++row) {
        for (int column = left; column <= right; ++column)
            wells[row * columns + column] = true;
    }
    return wells;
}

void PlateView::select(int from, int to, const QVector<bool> &kept)
{
    QVector<bool> wells = rectangle(from, to);
    for (int well = 0; well < kept.size(); ++well)
        wells[well] = wells[well] || kept[well];
    setSelection(wells);
}

void PlateView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_selection.isEmpty())
        return;
    const bool adds = event->modifiers() & Qt::ControlModifier;
    m_kept = adds ? m_selection : QVector<bool>();
    const QRectF first = m_picture.wellRect(0, rect());
    const QRectF last = m_picture.wellRect(m_selection.size() - 1, rect());
    const QPointF point = event->localPos();
    const int columns = m_picture.columns;
    const int well = m_picture.wellAt(point, rect());
    const int inRow = m_picture.wellAt({first.center().x(), point.y()}, rect());
    const int inColumn = m_picture.wellAt({point.x(), first.center().y()}, rect());
    if (well >= 0) {
        m_isDragging = true;
        m_anchor = m_frame = well;
        select(well, well, m_kept);
    } else if (point.x() < first.left() && inRow >= 0) {
        select(inRow, inRow + columns - 1, m_kept);
    } else if (point.y() < first.top() && inColumn >= 0) {
        select(inColumn, inColumn + columns * (m_picture.rows - 1), m_kept);
    } else if (!adds && !QRectF(first.topLeft(), last.bottomRight()).contains(point)) {
        setSelection(QVector<bool>(m_selection.size()));
    }
    announce();
}

void PlateView::mouseMoveEvent(QMouseEvent *event)
{
    const int well = m_picture.wellAt(event->localPos(), rect());
    if (m_isDragging && well >= 0) {
        m_frame = well;
        select(m_anchor, well, m_kept);
    }
    if (well == m_hovered)
        return;
    m_hovered = well;
    announce();
}

void PlateView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_isDragging = false;
    if (m_selection.contains(true))
        Q_EMIT picked();
}

void PlateView::leaveEvent(QEvent *)
{
    m_hovered = -1;
    announce();
}

void PlateView::moveFrame(int rows, int columns, bool extends)
{
    const int row = m_frame < 0 ? 0 : m_frame / m_picture.columns + rows;
    const int column = m_frame < 0 ? 0 : m_frame % m_picture.columns + columns;
    const int to = std::clamp(row, 0, m_picture.rows - 1) * m_picture.columns
        + std::clamp(column, 0, m_picture.columns - 1);
    if (!extends || m_anchor < 0)
        m_anchor = extends && m_frame >= 0 ? m_frame : to;
    setCurrentWell(to);
    if (extends)
        select(m_anchor, to, {});
}

void PlateView::keyPressEvent(QKeyEvent *event)
{
    const bool extends = event->modifiers() & Qt::ShiftModifier;
    if (m_selection.isEmpty()) {
        QWidget::keyPressEvent(event);
    } else if (event->matches(QKeySequence::SelectAll)) {
        setSelection(QVector<bool>(m_selection.size(), true));
    } else if (event->key() == Qt::Key_Escape && m_selection.contains(true)) {
        setSelection(QVector<bool>(m_selection.size()));
    } else if (event->key() == Qt::Key_Space && m_frame >= 0) {
        QVector<bool> wells = m_selection;
        wells[m_frame] = !wells[m_frame];
        m_anchor = m_frame;
        setSelection(wells);
    } else if (event->key() == Qt::Key_Left) {
        moveFrame(0, -1, extends);
    } else if (event->key() == Qt::Key_Right) {
        moveFrame(0, 1, extends);
    } else if (event->key() == Qt::Key_Up) {
        moveFrame(-1, 0, extends);
    } else if (event->key() == Qt::Key_Down) {
        moveFrame(1, 0, extends);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PlateView::announce()
{
    Q_EMIT currentChanged();
    QAccessibleValueChangeEvent change(this, wellText(currentWell()));
    QAccessible::updateAccessibility(&change);
}

} // namespace qelworkbench
