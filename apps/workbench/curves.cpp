#include "curves.h"

#include "colorscales.h"
#include "text.h"

#include <qelfrontend/wells.h>

#include <QtCore/QEvent>
#include <QtWidgets/QVBoxLayout>

#include <qwt_legend.h>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_draw.h>
#include <qwt_symbol.h>

#include <algorithm>
#include <cmath>

namespace qelworkbench {

namespace {

constexpr int mostCurves = 24;

// Numbers in the language of the window.
class Scale : public QwtScaleDraw
{
public:
    QwtText label(double value) const override
    {
        QLocale locale;
        locale.setNumberOptions(QLocale::OmitGroupSeparator);
        return locale.toString(value, 'g', 7);
    }
};

} // namespace

Curves::Curves(QWidget *parent)
    : QWidget(parent)
    , m_plot(new QwtPlot(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_plot);
    m_plot->setMinimumSize(240, 110); // its own hint grows with the scales
    m_plot->setCanvasBackground(Qt::white);
    static_cast<QwtPlotCanvas *>(m_plot->canvas())->setFrameStyle(QFrame::NoFrame);
    auto *grid = new QwtPlotGrid;
    grid->setMajorPen(QColor(0xdd, 0xdd, 0xdd), 1);
    grid->attach(m_plot);
    m_plot->insertLegend(new QwtLegend, QwtPlot::RightLegend);
    m_plot->setAxisScaleDraw(QwtPlot::xBottom, new Scale);
    m_plot->setAxisScaleDraw(QwtPlot::yLeft, new Scale);
    m_plot->setContentsMargins(0, 8, 4, 0);
    retranslate();
}

void Curves::show(const QVector<Result> &results, int read, const QVector<bool> &wells)
{
    m_plot->detachItems(QwtPlotItem::Rtti_PlotCurve);
    const int wanted = std::min(int(wells.count(true)), mostCurves);
    if (results.isEmpty() || !results.constFirst().run.plate) {
        m_plot->replot();
        return;
    }
    const int columns = results.constFirst().run.plate->columns;
    int drawn = 0;
    for (int well = 0; well < wells.size() && drawn < wanted; ++well) {
        if (!wells[well])
            continue;
        QVector<QPointF> points;
        for (const Result &result : results) {
            const double value = result.run.plate && read < result.run.plate->reads.size()
                ? result.run.plate->reads[read].values.value(well, NAN)
                : NAN;
            const double seconds =
                double(results.constFirst().entry.startedAt.msecsTo(result.entry.startedAt)) / 1000;
            if (std::isfinite(value))
                points.append({seconds, value});
        }
        const QColor color = viridis(wanted > 1 ? 0.9 * drawn / (wanted - 1) : 0.3);
        auto *curve = new QwtPlotCurve(qel::frontend::wellName(well / columns, well % columns));
        curve->setRenderHint(QwtPlotItem::RenderAntialiased);
        curve->setPen(color, 2);
        curve->setSymbol(new QwtSymbol(QwtSymbol::Ellipse, color, QPen(color), QSize(6, 6)));
        curve->setSamples(points);
        curve->attach(m_plot);
        ++drawn;
    }
    m_plot->setAxisTitle(QwtPlot::yLeft, results.constFirst().run.plate->unit);
    m_plot->replot();
    m_plot->updateLayout();
}

int Curves::curveCount() const
{
    return m_plot->itemList(QwtPlotItem::Rtti_PlotCurve).size();
}

void Curves::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void Curves::retranslate()
{
    m_plot->setAxisTitle(QwtPlot::xBottom, text("qelworkbench-curve-time"));
    setAccessibleName(text("qelworkbench-tab-curves"));
}

} // namespace qelworkbench
