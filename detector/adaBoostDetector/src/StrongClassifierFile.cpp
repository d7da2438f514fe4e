#include "StrongClassifier.h"
#include "VoteTable.h"

namespace {

const int MAX_CLASSIFIERS = 10000;

// Reads `count` classifiers, fewer when the stream fails.
template <typename Weak, typename Add>
void loadClassifiers(std::istream& stream, int count, Add add) {
    for (int i = 0; i < count; ++i) {
        Weak weak;
        weak.basicLoad(stream);
        if (!stream) return;
        add(weak);
    }
}

}  // namespace

void StrongClassifier::save(std::ostream& stream) const {
    stream << rmct_.size() << ' ' << haar_.size() << ' ' << hog_.size() << '\n';
    stream << threshold << ' ' << 0 << '\n';
    for (const WeakClassifierHaar& weak : haar_) weak.basicSave(stream);
    for (const WeakClassifierRmct& weak : rmct_) weak.basicSave(stream);
    for (const WeakClassifierHog& weak : hog_) weak.basicSave(stream);
    stream << '\n';
}

bool StrongClassifier::load(std::istream& stream) {
    reset();
    const int numRmct = VoteTable::readNumber(stream, 0, MAX_CLASSIFIERS);
    const int numHaar = VoteTable::readNumber(stream, 0, MAX_CLASSIFIERS);
    const int numHog = VoteTable::readNumber(stream, 0, MAX_CLASSIFIERS);
    int unused = 0;
    if (!(stream >> threshold >> unused)) return false;
    loadClassifiers<WeakClassifierHaar>(
        stream, numHaar, [this](const WeakClassifierHaar& weak) { addHaarClassifier(weak); });
    loadClassifiers<WeakClassifierRmct>(
        stream, numRmct, [this](const WeakClassifierRmct& weak) { addRmctClassifier(weak); });
    loadClassifiers<WeakClassifierHog>(
        stream, numHog, [this](const WeakClassifierHog& weak) { addHogClassifier(weak); });
    return static_cast<bool>(stream);
}

void StrongClassifier::writeStrongClassifier(std::ostream& stream,
                                             const std::string& suffix) const {
    stream << "\tstatic cData weak_classifiers_" << suffix << "["
           << rmct_.size() + haar_.size() + hog_.size() << "][266] = {\n";
    for (const WeakClassifierRmct& weak : rmct_) weak.writeWeakClassifier(stream);
    for (const WeakClassifierHaar& weak : haar_) weak.writeWeakClassifier(stream);
    for (const WeakClassifierHog& weak : hog_) weak.writeWeakClassifier(stream);
    stream << "};\n";
}
