#include "LxGUI/Frame/Contrast.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr int MostMixing = 256;

using LinearTable = std::array<double, 256>;

/// What a channel of sRGB gives of light (WCAG 2.1, relative luminance).
LinearTable MakeLinearTable()
{
    LinearTable table{};
    for (size_t i = 0; i < table.size(); ++i) {
        const double channel = static_cast<double>(i) / 255;
        table[i] = channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    }
    return table;
}

double Luminance(const QColor &aColor)
{
    static const LinearTable sLinear = MakeLinearTable();
    const auto light = [](int aChannel) { return sLinear[static_cast<size_t>(aChannel)]; };
    return 0.2126 * light(aColor.red()) + 0.7152 * light(aColor.green()) + 0.0722 * light(aColor.blue());
}

QColor Mix(const QColor &aFrom, const QColor &aTo, int aShare)
{
    const auto mix = [aShare](int aA, int aB) { return aA + (aB - aA) * aShare / MostMixing; };
    return QColor(mix(aFrom.red(), aTo.red()), mix(aFrom.green(), aTo.green()), mix(aFrom.blue(), aTo.blue()));
}

}  // namespace

double ContrastRatio(const QColor &aText, const QColor &aGround)
{
    const auto [dark, light] = std::minmax({Luminance(aText), Luminance(aGround)});
    return (light + 0.05) / (dark + 0.05);
}

QColor StrongTextColor(const QColor &aGround)
{
    return ContrastRatio(Qt::black, aGround) >= ContrastRatio(Qt::white, aGround) ? Qt::black : Qt::white;
}

QColor MutedTextColor(const QColor &aGround)
{
    const QColor strong = StrongTextColor(aGround);
    int muted = 0;  // the readable share of the ground; more of it is less readable
    for (int step = MostMixing / 2; step > 0; step /= 2) {
        if (IsReadable(Mix(strong, aGround, muted + step), aGround)) {
            muted += step;
        }
    }
    return Mix(strong, aGround, muted);
}
