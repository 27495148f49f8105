#ifndef QELWORKBENCH_LAYOUTMENU_H
#define QELWORKBENCH_LAYOUTMENU_H

#include "platelayout.h"

#include <QtWidgets/QMenu>

namespace qelworkbench {

/// What wells can hold, to choose from, and whole layouts from the last plate or a file.
class LayoutMenu : public QMenu
{
    Q_OBJECT

public:
    explicit LayoutMenu(QWidget *parent = nullptr);

    /// The size of the plates that layouts are for.
    void setPlate(int rows, int columns);
    /// Takes the layout of a file in the `plater` format.
    void load(const QString &path);

    /// Remembers a layout for the next plate.
    static void remember(const PlateLayout &layout);

Q_SIGNALS:
    /// Wells are to hold `content`, as PlateLayout knows it; empty: nothing that is known.
    void contentChosen(const QString &content);
    void layoutChosen(const qelworkbench::PlateLayout &layout);
    void failed(const QString &sentence);

private:
    void fill();
    void askForStandard();
    void askForFile();

    int m_rows = 0;
    int m_columns = 0;
};

} // namespace qelworkbench

#endif
