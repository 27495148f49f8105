#ifndef QELWORKBENCH_PLATEVIEW_H
#define QELWORKBENCH_PLATEVIEW_H

#include "platepicture.h"

#include <QtWidgets/QWidget>

namespace qelworkbench {

/// A plate to look at and to pick wells on, with mouse, keyboard and screen reader.
///
/// Dragging selects a rectangle, with Ctrl in addition to what is selected; a click on a row's or
/// column's name selects it whole. The arrows move the keyboard's frame, with Shift they extend the
/// selection, the space bar turns a well over, Ctrl+A selects all, Escape nothing.
class PlateView : public QWidget
{
    Q_OBJECT

public:
    explicit PlateView(QWidget *parent = nullptr);

    /// Shows another picture. The selection stays where the plate's size stays.
    void setPicture(const PlatePicture &picture);
    const PlatePicture &picture() const;

    /// One flag a well.
    const QVector<bool> &selection() const;
    void setSelection(const QVector<bool> &selection);

    /// The well under the pointer, or else under the keyboard's frame; -1 for none.
    int currentWell() const;
    /// Moves the keyboard's frame.
    void setCurrentWell(int well);
    /// Name and value of a well, for instance "B12: 0.482 OD".
    QString wellText(int well) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void selectionChanged();
    /// The mouse has selected wells, and its button is up again.
    void picked();
    void pictureChanged();
    /// currentWell() is another one, or holds another value.
    void currentChanged();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QVector<bool> rectangle(int from, int to) const;
    void select(int from, int to, const QVector<bool> &kept);
    void moveFrame(int rows, int columns, bool extends);
    void announce();

    PlatePicture m_picture;
    QVector<bool> m_selection;
    QVector<bool> m_kept; // what was selected before the drag
    int m_hovered = -1;
    int m_frame = -1;  // the keyboard's well
    int m_anchor = -1; // where a drag or an extension began
    bool m_isDragging = false;
};

} // namespace qelworkbench

#endif
