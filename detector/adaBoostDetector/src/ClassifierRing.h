#pragma once

#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "CascadedClassifier.h"
#include "KZ_AngleRange.h"
#include "KZ_SharedPtr.h"
#include "KZ_Side.h"

class PatternDetector;

/// A few trained cascades of one object, and those that follow from them by quarter turns and
/// mirroring. It works on poses and makes a cascade when one is asked for; what it made stays.
class ClassifierRing {
public:
    std::string name;  ///< of the object
    std::string log;   ///< of the training; it only travels, and is found again in a file when it
                       ///< begins with a line "log"
    /// Settings of the training; they only travel. Keys hold no "=", values no line break. Some
    /// steer the generated source: see `saveHeader`.
    std::map<std::string, std::string> config;
    KZ::AngleRange angleRange;                        ///< angles of interest; the full circle
    std::vector<ClassifierProperties> possibilities;  ///< all poses that can be derived

    /// See `load`.
    explicit ClassifierRing(const std::string& path);
    /// Takes cascades that outlive the ring, and gives them its name.
    explicit ClassifierRing(std::vector<CascadedClassifier*>& cascades);

    /// Reads a `.ring` file, up to where it stops making sense. A file that cannot be opened and
    /// another extension are assertions.
    void load(const std::string& path);
    /// Writes a `.ring` file with the trained cascades. A file that cannot be written is an
    /// assertion.
    void save(const std::string& path) const;
    /// Writes the trained cascades as C++ source, whose function <ringName>() returns this ring
    /// and, given parameters of a scan, a detector. These entries of `config` count, each with what
    /// stands in for an absent one: "ringName" (the ring's name), "command", which makes the file
    /// ("train_cascade"), and "creationTime" (now). Equal rings give equal bytes when all are set.
    /// A file that cannot be written is an assertion.
    void saveHeader(const std::string& fileName) const;

    /// Fills `possibilities` from the trained cascades, and gives those the ring's name.
    void generatePossibilities();
    /// The cascades for all poses with these angles and sides, made if need be. The ring owns them.
    std::vector<CascadedClassifier*> getClassifiers(const KZ::AngleRange& angles,
                                                    const KZ::Side::Value& sides);
    /// A new detector with those cascades.
    KZ::SharedPtr<PatternDetector> getDetector(const KZ::AngleRange& angles,
                                               const KZ::Side::Value& sides, int neighbors);

    /// True if any pattern is symmetric.
    bool isSymmetric() const;
    /// Number of trained cascades.
    int getNumClassifiers() const { return static_cast<int>(baseClassifiers_.size()); }
    /// Trained cascade `i`, from 0.
    CascadedClassifier& baseClassifier(int i) { return *baseClassifiers_[static_cast<size_t>(i)]; }
    /// Sets the last stage's threshold in every cascade; 0x7fffffff leaves them as they are.
    void setLastCascadeThreshold(int threshold);
    void setName(const std::string& text) { name = text; }
    void setConfig(const std::map<std::string, std::string>& settings) { config = settings; }

private:
    void addClassifier(const KZ::SharedPtr<CascadedClassifier>& cascade);
    CascadedClassifier* findClassifier(const ClassifierProperties& pose) const;
    CascadedClassifier* deriveClassifier(const ClassifierProperties& pose);
    void readCascades(std::istream& stream);
    void readConfig(std::istream& stream);
    void writeSource(std::ostream& stream, const std::string& fileName) const;
    void writeRingFunction(std::ostream& stream, const std::string& ringName) const;

    std::vector<KZ::SharedPtr<CascadedClassifier>> classifiers_;      ///< trained and derived
    std::vector<KZ::SharedPtr<CascadedClassifier>> baseClassifiers_;  ///< trained
};
