#include "colorscales.h"

#include <algorithm>
#include <cstddef>

namespace qelworkbench {

template<std::size_t count>
static QColor mixed(const QRgb (&steps)[count], double share)
{
    constexpr int last = int(count) - 1;
    const double place = std::clamp(share, 0.0, 1.0) * last;
    const int below = std::min(int(place), last - 1);
    const double part = place - below;
    const auto mix = [part](int from, int to) { return int(from + part * (to - from) + 0.5); };
    const QRgb from = steps[below];
    const QRgb to = steps[below + 1];
    return QColor(mix(qRed(from), qRed(to)), mix(qGreen(from), qGreen(to)),
                  mix(qBlue(from), qBlue(to)));
}

QColor viridis(double share)
{
    static constexpr QRgb steps[] = {
        0x440154, 0x481a6c, 0x472f7d, 0x414487, 0x39568c, 0x31688e, 0x2a788e, 0x23888e,
        0x1f988b, 0x22a884, 0x35b779, 0x54c568, 0x7ad151, 0xa5db36, 0xd2e21b, 0xfde725,
    };
    return mixed(steps, share);
}

QColor blueToRed(double share)
{
    static constexpr QRgb steps[] = {
        0x053061, 0x2166ac, 0x4393c3, 0x92c5de, 0xd1e5f0, 0xf7f7f7,
        0xfddbc7, 0xf4a582, 0xd6604d, 0xb2182b, 0x67001f,
    };
    return mixed(steps, share);
}

} // namespace qelworkbench
