// Auto-generated file, made by: train_cascade, before any training: it never fires. Do not edit!
//
// @file ada__ada_staticPalm_2014_12_05__17_40_12.cpp
// @brief This file contains previously trained set of classifiers.
//
// The Ormuz project trains cascades that find one kind of object in pictures.
// A set holds one cascade for each trained angle of the object; those for other
// angles, and for its mirror image, are derived when the program runs.
// @author the Ormuz project's training program

#include "ClassifierMap.h"

// Creation time: before training

#ifdef WIN32
#define DLL_DECLSPEC __declspec(dllexport)
#else
#define DLL_DECLSPEC __attribute__ ((visibility ("default")))
#endif

static CascadedClassifier& build_ada__ada_staticPalm_2014_12_05__17_40_12_r0() {
    int set_threshold_ada__ada_staticPalm_2014_12_05__17_40_12_r0[1] = {1};
    short set_weak_classifiers_rmct_n_ada__ada_staticPalm_2014_12_05__17_40_12_r0[1] = {1};
    short set_weak_classifiers_haar_n_ada__ada_staticPalm_2014_12_05__17_40_12_r0[1] = {0};
    short set_weak_classifiers_hog_n_ada__ada_staticPalm_2014_12_05__17_40_12_r0[1] = {0};
	static cData weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[1][266] = {
	{1, 1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0},
};
    static CascadedClassifier ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier;
    StrongClassifier _strong_classifier;
    WeakClassifierRmct _weak_rmct(KZ::BasePoint<KZ::schar>(0, 0));
    WeakClassifierHaar _weak_haar;
    WeakClassifierHog _weak_hog;
    ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier.setMonoSize(KZ::Size(36, 35));
    ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier.setBaseSize(KZ::Size(36, 35));
    ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier.setAngle(-30);
    ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier.setName("ada__ada_staticPalm_2014_12_05__17_40_12_r0");
    ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier.setSymmetry(false);
    {
        int j = 0;
        int end = 0;
        _strong_classifier.reset();
        end += set_weak_classifiers_rmct_n_ada__ada_staticPalm_2014_12_05__17_40_12_r0[0];
        for (; j < end; ++j) {
            _weak_rmct.set(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][1]);
            _weak_rmct.setData(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j] + 2);
            _strong_classifier.addRmctClassifier(_weak_rmct);
        }
        end += set_weak_classifiers_haar_n_ada__ada_staticPalm_2014_12_05__17_40_12_r0[0];
        for (; j < end; ++j) {
            KZ::Rect allRect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][1], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][2], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][3]);
            KZ::Rect posRect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][4], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][5], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][6], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][7]);
            _weak_haar.set(allRect, posRect, weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][8]);
            _weak_haar.setData( weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j] + 8);
            _strong_classifier.addHaarClassifier(_weak_haar);
        }
        end += set_weak_classifiers_hog_n_ada__ada_staticPalm_2014_12_05__17_40_12_r0[0];
        for (; j < end; ++j) {
            _weak_hog.setBlock(KZ::Rect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][1], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][2], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][3]));
            _weak_hog.setCell(KZ::Rect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][4], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][5], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][6], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][7]));
            _weak_hog.setSector(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j][8]);
            _weak_hog.setData((KZ::schar*) weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r0_0[j] + 9);
            _strong_classifier.addHogClassifier(_weak_hog);
        }
        _strong_classifier.setThreshold( set_threshold_ada__ada_staticPalm_2014_12_05__17_40_12_r0[0]);
        ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier.addStrongClassifier(_strong_classifier);
    }
    return ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier;
}

static CascadedClassifier& build_ada__ada_staticPalm_2014_12_05__17_40_12_r1() {
    int set_threshold_ada__ada_staticPalm_2014_12_05__17_40_12_r1[1] = {1};
    short set_weak_classifiers_rmct_n_ada__ada_staticPalm_2014_12_05__17_40_12_r1[1] = {1};
    short set_weak_classifiers_haar_n_ada__ada_staticPalm_2014_12_05__17_40_12_r1[1] = {0};
    short set_weak_classifiers_hog_n_ada__ada_staticPalm_2014_12_05__17_40_12_r1[1] = {0};
	static cData weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[1][266] = {
	{1, 1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0},
};
    static CascadedClassifier ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier;
    StrongClassifier _strong_classifier;
    WeakClassifierRmct _weak_rmct(KZ::BasePoint<KZ::schar>(0, 0));
    WeakClassifierHaar _weak_haar;
    WeakClassifierHog _weak_hog;
    ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier.setMonoSize(KZ::Size(35, 33));
    ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier.setBaseSize(KZ::Size(35, 33));
    ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier.setAngle(0);
    ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier.setName("ada__ada_staticPalm_2014_12_05__17_40_12_r1");
    ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier.setSymmetry(false);
    {
        int j = 0;
        int end = 0;
        _strong_classifier.reset();
        end += set_weak_classifiers_rmct_n_ada__ada_staticPalm_2014_12_05__17_40_12_r1[0];
        for (; j < end; ++j) {
            _weak_rmct.set(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][1]);
            _weak_rmct.setData(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j] + 2);
            _strong_classifier.addRmctClassifier(_weak_rmct);
        }
        end += set_weak_classifiers_haar_n_ada__ada_staticPalm_2014_12_05__17_40_12_r1[0];
        for (; j < end; ++j) {
            KZ::Rect allRect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][1], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][2], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][3]);
            KZ::Rect posRect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][4], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][5], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][6], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][7]);
            _weak_haar.set(allRect, posRect, weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][8]);
            _weak_haar.setData( weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j] + 8);
            _strong_classifier.addHaarClassifier(_weak_haar);
        }
        end += set_weak_classifiers_hog_n_ada__ada_staticPalm_2014_12_05__17_40_12_r1[0];
        for (; j < end; ++j) {
            _weak_hog.setBlock(KZ::Rect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][1], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][2], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][3]));
            _weak_hog.setCell(KZ::Rect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][4], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][5], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][6], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][7]));
            _weak_hog.setSector(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j][8]);
            _weak_hog.setData((KZ::schar*) weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r1_0[j] + 9);
            _strong_classifier.addHogClassifier(_weak_hog);
        }
        _strong_classifier.setThreshold( set_threshold_ada__ada_staticPalm_2014_12_05__17_40_12_r1[0]);
        ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier.addStrongClassifier(_strong_classifier);
    }
    return ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier;
}

static CascadedClassifier& build_ada__ada_staticPalm_2014_12_05__17_40_12_r2() {
    int set_threshold_ada__ada_staticPalm_2014_12_05__17_40_12_r2[1] = {1};
    short set_weak_classifiers_rmct_n_ada__ada_staticPalm_2014_12_05__17_40_12_r2[1] = {1};
    short set_weak_classifiers_haar_n_ada__ada_staticPalm_2014_12_05__17_40_12_r2[1] = {0};
    short set_weak_classifiers_hog_n_ada__ada_staticPalm_2014_12_05__17_40_12_r2[1] = {0};
	static cData weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[1][266] = {
	{1, 1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0},
};
    static CascadedClassifier ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier;
    StrongClassifier _strong_classifier;
    WeakClassifierRmct _weak_rmct(KZ::BasePoint<KZ::schar>(0, 0));
    WeakClassifierHaar _weak_haar;
    WeakClassifierHog _weak_hog;
    ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier.setMonoSize(KZ::Size(36, 35));
    ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier.setBaseSize(KZ::Size(36, 35));
    ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier.setAngle(30);
    ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier.setName("ada__ada_staticPalm_2014_12_05__17_40_12_r2");
    ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier.setSymmetry(false);
    {
        int j = 0;
        int end = 0;
        _strong_classifier.reset();
        end += set_weak_classifiers_rmct_n_ada__ada_staticPalm_2014_12_05__17_40_12_r2[0];
        for (; j < end; ++j) {
            _weak_rmct.set(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][1]);
            _weak_rmct.setData(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j] + 2);
            _strong_classifier.addRmctClassifier(_weak_rmct);
        }
        end += set_weak_classifiers_haar_n_ada__ada_staticPalm_2014_12_05__17_40_12_r2[0];
        for (; j < end; ++j) {
            KZ::Rect allRect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][1], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][2], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][3]);
            KZ::Rect posRect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][4], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][5], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][6], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][7]);
            _weak_haar.set(allRect, posRect, weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][8]);
            _weak_haar.setData( weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j] + 8);
            _strong_classifier.addHaarClassifier(_weak_haar);
        }
        end += set_weak_classifiers_hog_n_ada__ada_staticPalm_2014_12_05__17_40_12_r2[0];
        for (; j < end; ++j) {
            _weak_hog.setBlock(KZ::Rect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][0], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][1], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][2], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][3]));
            _weak_hog.setCell(KZ::Rect(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][4], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][5], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][6], weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][7]));
            _weak_hog.setSector(weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j][8]);
            _weak_hog.setData((KZ::schar*) weak_classifiers_ada__ada_staticPalm_2014_12_05__17_40_12_r2_0[j] + 9);
            _strong_classifier.addHogClassifier(_weak_hog);
        }
        _strong_classifier.setThreshold( set_threshold_ada__ada_staticPalm_2014_12_05__17_40_12_r2[0]);
        ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier.addStrongClassifier(_strong_classifier);
    }
    return ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier;
}

extern "C" {

DLL_DECLSPEC ClassifierRing* ada__ada_staticPalm_2014_12_05__17_40_12() {
    static ClassifierRing* pRing = NULL;
    if (pRing)
        return pRing;
    CascadedClassifier& ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier = build_ada__ada_staticPalm_2014_12_05__17_40_12_r0();
    CascadedClassifier& ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier = build_ada__ada_staticPalm_2014_12_05__17_40_12_r1();
    CascadedClassifier& ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier = build_ada__ada_staticPalm_2014_12_05__17_40_12_r2();
    std::vector<CascadedClassifier*> classifiersVec;
    classifiersVec.push_back(&ada__ada_staticPalm_2014_12_05__17_40_12_r0_cascadedClassifier);
    classifiersVec.push_back(&ada__ada_staticPalm_2014_12_05__17_40_12_r1_cascadedClassifier);
    classifiersVec.push_back(&ada__ada_staticPalm_2014_12_05__17_40_12_r2_cascadedClassifier);
    static ClassifierRing ring(classifiersVec);
    pRing = &ring;
    ring.setName("palm");
    ring.generatePossibilities();
    mapStringString config; 
    config["command"] = "train_cascade, before any training: it never fires";
    config["creationTime"] = "before training";
    config["ringName"] = "ada__ada_staticPalm_2014_12_05__17_40_12";
    ring.setConfig(config);
    return &ring;
}

}

KZ::SharedPtr<BaseDetector> ada__ada_staticPalm_2014_12_05__17_40_12(const PatternDetector::Parameters& parameters, const KZ::AngleRange& angleRange) {
    ClassifierRing* pRing = ada__ada_staticPalm_2014_12_05__17_40_12();
    static std::map<std::string, KZ::SharedPtr<BaseDetector> > mapDetectors;
    const std::string key = KZ::toStr(angleRange) + "_" + KZ::toStr(parameters);
    KZ::SharedPtr<BaseDetector>& detector = mapDetectors[key];
    if (!detector)
        detector = KZ::SharedPtr<BaseDetector>(
            new PatternDetector(pRing, angleRange, KZ::Side::BOTH, parameters));
    return detector;
}

KZ::SharedPtr<BaseDetector> ada__ada_staticPalm_2014_12_05__17_40_12(const PatternDetector::Parameters& parameters) {
    return ada__ada_staticPalm_2014_12_05__17_40_12(parameters, KZ::AngleRange(-30, 30));
}
