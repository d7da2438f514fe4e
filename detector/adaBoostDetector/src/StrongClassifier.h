#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "KZ_Image.h"
#include "WeakClassifierHaar.h"
#include "WeakClassifierHog.h"
#include "WeakClassifierRmct.h"

/// Number of the layer of `zoom` in a ladder of ratio 1.2 that begins at zoom 1. A zoom that is no
/// positive number is an assertion.
int zoomKey(float zoom);

/// One stage of a cascade: weak classifiers of three kinds, whose votes are added, and a threshold
/// that the sum must not be below. It scores after it has been activated for a layer. Copies share
/// the tables of votes, and must be activated anew.
///
/// Scoring and activation write through `const`: one thread at a time.
class StrongClassifier {
public:
    /// Windows that `scoreBlock` takes at once.
    static constexpr int BLOCK = 4;

    int threshold = 0;

    void addRmctClassifier(const WeakClassifierRmct& weak);
    void addHaarClassifier(const WeakClassifierHaar& weak);
    void addHogClassifier(const WeakClassifierHog& weak);
    void addWeakClassifier(const WeakClassifierHog& weak) { addHogClassifier(weak); }
    void setThreshold(int value) { threshold = value; }
    /// Back to an empty stage.
    void reset();

    const std::vector<WeakClassifierRmct>& rmctClassifiers() const { return rmct_; }
    /// At base size.
    const std::vector<WeakClassifierHaar>& haarClassifiers() const { return haar_; }
    const std::vector<WeakClassifierHog>& hogClassifiers() const { return hog_; }

    /// Prepares for a layer: `rmctStrip` is the pitch of its RMCT image and `integralStrip` that of
    /// the integral image at base size, both in bytes. Haar features are resized once for each
    /// `zoomKey`, with the zoom that comes first. A classifier without votes is an assertion.
    void activate(int rmctStrip, int integralStrip, float zoom) const;

    // Sums of votes, each over the classifiers of one kind.

    /// `p_data` is the window's corner in the RMCT image.
    int scoreRmct(const unsigned char* p_data) const;
    /// `integralPtr` is the window's corner in the integral image at base size.
    int scoreHaar(const unsigned int* integralPtr) const;
    /// `integralHog` is that of the rectangle given to `moveHogRoi`.
    int scoreHog(const KZ::Image& integralHog) const;
    /// scoreRmct + scoreHaar of `count` windows, 1 to BLOCK, given by their corners.
    void scoreBlock(const unsigned char* const* p_data, const unsigned int* const* integralPtr,
                    int count, int* scores) const;

    /// The part of the window whose gradients the HOG classifiers read; empty without any.
    KZ::Rect calculateHogRoi() const;
    /// Makes the HOG classifiers' rectangles relative to `roi`, for good.
    void moveHogRoi(const KZ::Rect& roi) const;
    /// Makes their offsets for an integral HOG with rows of `elements` sums.
    void setHogStrip(int elements) const;

    /// True when the RMCT and Haar classifiers read nothing outside a window of `size`, turned or
    /// mirrored as it may be. The HOG ones are checked when a cascade is activated.
    bool fits(const KZ::Size& size) const;

    /// The stage of a window of `size` that was turned or mirrored.
    void rotate(const KZ::Size& size);
    void flip(const KZ::Size& size);

    /// A stage of a `.ring` file. `load` returns false on a bad stream, or on more than 10000
    /// classifiers of a kind; the stage then holds what was read.
    void save(std::ostream& stream) const;
    bool load(std::istream& stream);
    /// The table of all classifiers as generated source, named weak_classifiers_<suffix>.
    void writeStrongClassifier(std::ostream& stream, const std::string& suffix) const;

private:
    void activateRmct(int rmctStrip) const;
    void activateHaar(int integralStrip, float zoom) const;
    void activateHog() const;
    void clearActivation();

    mutable std::vector<WeakClassifierRmct> rmct_;
    std::vector<WeakClassifierHaar> haar_;
    mutable std::vector<WeakClassifierHog> hog_;
    /// The Haar list resized, one entry a zoom key.
    mutable std::vector<std::vector<WeakClassifierHaar>> haarByZoom_;
    /// The pitch that each entry's offsets are for: a classifier keeps 16 bits of it alone.
    mutable std::vector<int> haarStrips_;

    // What scoring walks.
    mutable const WeakClassifierRmct* pRmctBegin_ = nullptr;
    mutable const WeakClassifierRmct* pRmctEnd_ = nullptr;
    mutable const WeakClassifierHaar* pHaarBegin_ = nullptr;
    mutable const WeakClassifierHaar* pHaarEnd_ = nullptr;
    mutable const WeakClassifierHog* pHogBegin_ = nullptr;
    mutable const WeakClassifierHog* pHogEnd_ = nullptr;
};
