#ifndef QELWORKBENCH_CURVES_H
#define QELWORKBENCH_CURVES_H

#include "store.h"

#include <QtWidgets/QWidget>

class QwtPlot;

namespace qelworkbench {

/// The values of wells over the runs of a series, one curve a well. Marked wells are in the curves
/// as gaps where they were not measured; of many wells, the first few are drawn.
class Curves : public QWidget
{
    Q_OBJECT

public:
    explicit Curves(QWidget *parent = nullptr);

    /// @param read the read of each run that is drawn
    /// @param wells one flag a well
    void show(const QVector<Result> &results, int read, const QVector<bool> &wells);

    /// How many curves are drawn.
    int curveCount() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void retranslate();

    QwtPlot *m_plot;
};

} // namespace qelworkbench

#endif
