#include "viridis.h"

#include <algorithm>
#include <iterator>

namespace qelworkbench {

QColor viridis(double share)
{
    static constexpr QRgb steps[] = {
        0x440154, 0x481a6c, 0x472f7d, 0x414487, 0x39568c, 0x31688e, 0x2a788e, 0x23888e,
        0x1f988b, 0x22a884, 0x35b779, 0x54c568, 0x7ad151, 0xa5db36, 0xd2e21b, 0xfde725,
    };
    constexpr int last = int(std::size(steps)) - 1;
    const double place = std::clamp(share, 0.0, 1.0) * last;
    const int below = std::min(int(place), last - 1);
    const double part = place - below;
    const auto mix = [part](int from, int to) { return int(from + part * (to - from) + 0.5); };
    const QRgb from = steps[below];
    const QRgb to = steps[below + 1];
    return QColor(mix(qRed(from), qRed(to)), mix(qGreen(from), qGreen(to)),
                  mix(qBlue(from), qBlue(to)));
}

QColor inkOn(const QColor &background)
{
    const double luminance =
        0.2126 * background.redF() + 0.7152 * background.greenF() + 0.0722 * background.blueF();
    return luminance > 0.45 ? Qt::black : Qt::white;
}

} // namespace qelworkbench
