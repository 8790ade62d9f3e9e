#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace tonvex {

/// Measures stereo as it goes by: its peak, and how loud it is as a whole.
///
/// Loudness is the integrated loudness of Recommendation ITU-R BS.1770-4, in LUFS: both sides through the K
/// weighting of its annex 1, mean squares over blocks of 400 ms that begin every 100 ms, a gate at -70 LUFS,
/// a second one 10 LU below what passes the first. The recommendation gives the filters' coefficients at
/// 48000 frames a second alone. For other rates they are worked out by the bilinear transform from the corner
/// frequencies, gains and quality factors that give those at 48000 (Brecht De Man, "Evaluation of
/// Implementations of the EBU R128 Loudness Measurement", AES convention 145, 2018).
class Loudness_Meter {
public:
    /// frames a second
    explicit Loudness_Meter(int rate);

    /// Interleaved, 1.0 is full scale.
    void Add(std::span<const float> stereo);
    /// Largest sample so far, as a factor of full scale.
    float Peak() const noexcept { return peak; }
    /// LUFS; minus infinity for silence and for less than 400 ms.
    double Loudness() const;

private:
    /// Two poles and two zeros, transposed direct form II.
    struct Biquad {
        double b0, b1, b2, a1, a2;
        std::array<double, 2> first{}; ///< of the two sides
        std::array<double, 2> second{};
        double Process(std::size_t side, double in) noexcept {
            const double out = b0 * in + first[side];
            // The sum without the output first: only the rest waits for it.
            first[side] = (b1 * in + second[side]) - a1 * out;
            second[side] = b2 * in - a2 * out;
            return out;
        }
    };
    static Biquad Shelf(double rate);
    static Biquad High_Pass(double rate);

    Biquad shelf;
    Biquad highPass;
    std::size_t stepFrames; ///< 100 ms
    std::size_t framesInStep = 0;
    double stepSum = 0.0;      ///< of the squares of both sides
    std::vector<double> steps; ///< mean squares of the steps of 100 ms
    float peak = 0.0F;
};

/// 20 log10: decibels of an amplitude; minus infinity for 0.
double Decibels(double amplitude);

} // namespace tonvex
