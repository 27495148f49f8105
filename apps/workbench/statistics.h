#ifndef QELWORKBENCH_STATISTICS_H
#define QELWORKBENCH_STATISTICS_H

#include <QtCore/QVector>

#include <optional>

namespace qelworkbench {

/// What is worth knowing of several wells together.
struct Statistics
{
    int count = 0;       ///< wells with a finite value
    int notMeasured = 0; ///< wells without a value
    int saturated = 0;   ///< wells at the detector's maximum or beyond; counted above as well
    double mean = 0;
    std::optional<double> deviation; ///< of a sample, n - 1; from two wells on
    std::optional<double> variation; ///< deviation / |mean|; nothing for a mean of 0
};

/// The statistics of the wells of `values` that `selection` sets; of all when it sets none.
/// @param maximum where the detector ends; nothing when not known
Statistics statisticsOf(const QVector<double> &values, const QVector<bool> &selection,
                        const std::optional<double> &maximum);

} // namespace qelworkbench

#endif
