#pragma once

#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "AdaObject.h"
#include "ClassifierProperties.h"
#include "KZ_Image.h"
#include "StrongClassifier.h"

/// A sequence of stages that a window must pass in order, with the window's geometry.
///
/// It reads a window at three resolutions: RMCT codes and mono pixels of a pyramid layer, Haar sums
/// on the integral image of the frame, and gradients of the mono layer, those only for a window
/// that comes as far as the first stage with HOG classifiers.
///
/// Build it complete, turn or mirror it, and only then scan with it: scanning settles the offsets
/// of its features. One thread at a time, also for the `const` operations.
class CascadedClassifier : public ClassifierProperties {
public:
    /// Corners of windows in a layer, both ends included; empty when xs > xe or ys > ye.
    struct ScanRange {
        int xs, ys, xe, ye;
        bool empty() const { return xs > xe || ys > ye; }
    };

    std::vector<StrongClassifier> strongClassifiers;

    void addStrongClassifier(const StrongClassifier& stage);

    /// Appends an object to `out` for each window of the layer that passes, in steps of `step`
    /// pixels, row by row. `rmct` and `mono` are the layer of `zoom`, `integral` is of the frame.
    void addMatches(const KZ::Image& rmct, const KZ::Image& mono, const KZ::Image& integral,
                    std::vector<AdaObject>& out, float zoom, int step);
    /// The same for windows whose object touches `rect`, in layer pixels.
    void addMatches(const KZ::Image& rmct, const KZ::Image& mono, const KZ::Image& integral,
                    std::vector<AdaObject>& out, const KZ::Rect& rect, float zoom, int step);

    /// Runs the stages from `firstStage` on one window, given by its corner in each of the three
    /// images. The cascade must be active for their layer. True when all stages pass: `score` is
    /// then the last one's sum, or untouched when there was none to run.
    bool detect(const unsigned char* pRmctTransform, const unsigned char* pMono,
                const unsigned int* pIntegralImage, unsigned int firstStage, int& score) const;

    /// Prepares for a layer: pitches in bytes, and the size of the window (`monoSize`). Cheap when
    /// the layer is that of the last call.
    void activate(int rmctStrip, int monoStrip, int integralStrip, float zoom,
                  const KZ::Size& windowSize) const;

    /// The corners of windows, inside a layer of `layerSize`, whose object touches `rect`.
    ScanRange scanRange(const KZ::Size& layerSize, const KZ::Rect& rect) const;
    /// What a window at (x, y) that passed with `score` is reported as.
    AdaObject objectAt(int x, int y, int score) const;

    /// The cascade of the object turned by a quarter, or mirrored left to right.
    void rotate();
    void flipVertically();

    /// A cascade of a `.ring` file. `load` returns false on a bad stream, and on a feature that
    /// reads outside the window.
    void save(std::ostream& stream) const;
    bool load(std::istream& stream);
    /// Generated source: a function build_<name>() that returns the cascade, filled from tables.
    void writeClassifier(std::ostream& stream, const std::string& cascadeName) const;

private:
    /// A pointer into the object that it is a part of: copies start with null.
    template <typename T>
    class OwnPointer {
    public:
        OwnPointer() = default;
        OwnPointer(const OwnPointer&) {}
        OwnPointer& operator=(const OwnPointer&) { return *this = nullptr; }
        OwnPointer& operator=(const T* p) {
            pointer_ = p;
            return *this;
        }
        operator const T*() const { return pointer_; }
        const T* operator->() const { return pointer_; }

    private:
        const T* pointer_ = nullptr;
    };

    static constexpr int HOG_SPREAD = 8;

    void calculateHogRoi() const;
    KZ::Rect hogWindow(int x, int y, const KZ::Size& spread) const;
    void settleFirstStage() const;
    void clearActivation();
    const std::vector<int>& shifts(int key, int last, float zoom);
    void addMatchesStatic(const KZ::Image& rmctTransform, const KZ::Image& mono,
                          const KZ::Image& integralImage, std::vector<AdaObject>& out,
                          const ScanRange& range, const std::vector<int>& shift, int step) const;
    /// A window that passed the stages before: its corner in the layer and in each image.
    struct Window {
        int x, y;
        const unsigned char* rmct;
        const unsigned char* mono;
        const unsigned int* integral;
    };
    /// Windows that wait for a stage, in the order of the scan.
    struct Waiting {
        int count;
        int x[StrongClassifier::BLOCK], y[StrongClassifier::BLOCK];
        const unsigned char* rmct[StrongClassifier::BLOCK];
        const unsigned char* mono[StrongClassifier::BLOCK];
        const unsigned int* integral[StrongClassifier::BLOCK];
    };
    void scanRow(const Window& row, const int* shift, int last, int step,
                 std::vector<AdaObject>& out) const;
    void advance(const Window& window, size_t stage, int score, std::vector<AdaObject>& out) const;
    void judge(size_t stage, std::vector<AdaObject>& out) const;
    void judgeHog(const Waiting& waiting, size_t stage, int* scores,
                  std::vector<AdaObject>& out) const;
    int sumNeighbours(const Waiting& waiting, int first, KZ::Rect& corners) const;
    void sumGradients(const unsigned char* pMono, const KZ::Size& spread) const;
    void addMatchesDynamic(const KZ::Image& rmctTransform, const KZ::Image& mono,
                           const KZ::Image& integralImage, std::vector<AdaObject>& out,
                           const ScanRange& range, const std::vector<int>& shift, int step) const;

    /// Sums of gradients for windows whose corners lie up to HOG_SPREAD apart, and the part of it
    /// that is the window's at hand.
    mutable KZ::Image gradientSums_;
    mutable KZ::Image integralHog_;
    mutable bool hogReady_ = false;
    mutable KZ::Rect hogRoi_;  ///< part of the window that `integralHog_` is of
    mutable int monoStrip_ = 0;
    mutable int hogStart_ = 0x7fffffff;    ///< first stage with HOG classifiers
    mutable bool rmctFirstStage_ = false;  ///< stage 0 has RMCT classifiers only
    mutable unsigned int startStage_ = 0;  ///< the first stage that is not scored inline
    mutable int firstStageThreshold_ = -2147483647 - 1;
    /// For a zoom key, the frame coordinate of each layer coordinate.
    std::map<int, std::vector<int>> shifts_;
    mutable OwnPointer<StrongClassifier> firstStage_;  ///< not null: the settings above stand
    mutable OwnPointer<WeakClassifierRmct> pRmctClassifierStart_;
    mutable OwnPointer<WeakClassifierRmct> pRmctClassifierEnd_;
    mutable std::vector<Waiting> waiting_;  ///< of a scan, one a stage
};
