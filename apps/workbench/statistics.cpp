#include "statistics.h"

#include <cmath>

namespace qelworkbench {

Statistics statisticsOf(const QVector<double> &values, const QVector<bool> &selection,
                        const std::optional<double> &maximum)
{
    Statistics statistics;
    const bool takesAll = !selection.contains(true);
    double squares = 0; // of the distances from the mean so far, in Welford's way
    for (int well = 0; well < values.size(); ++well) {
        if (!takesAll && !selection.value(well))
            continue;
        const double value = values[well];
        if (std::isnan(value)) {
            ++statistics.notMeasured;
            continue;
        }
        if ((maximum && value >= *maximum) || value == INFINITY)
            ++statistics.saturated;
        if (std::isinf(value))
            continue;
        ++statistics.count;
        const double distance = value - statistics.mean;
        statistics.mean += distance / statistics.count;
        squares += distance * (value - statistics.mean);
    }
    if (statistics.count > 1) {
        statistics.deviation = std::sqrt(squares / (statistics.count - 1));
        if (statistics.mean != 0)
            statistics.variation = *statistics.deviation / std::abs(statistics.mean);
    }
    return statistics;
}

} // namespace qelworkbench
