#ifndef QELWORKBENCH_WELLFACTS_H
#define QELWORKBENCH_WELLFACTS_H

#include <QtWidgets/QWidget>

class QLabel;

namespace qelworkbench {

class PlateView;

/// What a plate says in words, to stand below it: the well that is looked at, the statistics of the
/// selected wells, and how many are marked instead of coloured.
class WellFacts : public QWidget
{
    Q_OBJECT

public:
    explicit WellFacts(PlateView *plate, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void showWell();
    void showStatistics();

    PlateView *m_plate;
    QLabel *m_well;
    QLabel *m_statistics;
    QLabel *m_legend;
};

} // namespace qelworkbench

#endif
