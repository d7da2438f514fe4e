#include <gtest/gtest.h>

#include <sstream>

#include "KZ_ImageData.h"
#include "KZ_Utils.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::LogCapture;

namespace {

// A grey image of 10 by 8 that counts what is asked of it.
class CountedData : public ImageData {
public:
    explicit CountedData(const char* label)
        : ImageData(Size(10, 8), COLOR_MODE_MONO), label_(label) {
        std::fill(image_.data(), image_.data() + 80, static_cast<unsigned char>(9));
    }
    std::string name() const override { return label_; }
    void reset() override {
        ++resets;
        ImageData::reset();
    }
    void update() override {
        ++updates;
        ImageData::update();
    }
    void compute(const Rect& rect) override { computed.push_back(rect); }

    int resets = 0, updates = 0;
    std::vector<Rect> computed;

private:
    const char* label_;
};

using Node = SharedPtr<CountedData>;

}  // namespace

TEST(DataGraph, DiamondResetsTwiceAndUpdatesOnce) {
    const Node root(new CountedData("root")), left(new CountedData("left"));
    left->addParent(root);
    {
        const Node right(new CountedData("right")), bottom(new CountedData("bottom"));
        right->addParent(root);
        bottom->addParent(left);
        bottom->addParent(right);
        for (int frame = 1; frame <= 2; ++frame) {
            root->resetRecursive();
            root->updateRecursive();
            root->updateRecursive();
            EXPECT_EQ(2 * frame, bottom->resets);
            EXPECT_EQ(frame, bottom->updates);
            EXPECT_EQ(frame, root->updates);
        }
        EXPECT_TRUE(bottom->isLeafNode());
        std::ostringstream dot;
        root->resetRecursive(dot);
        const auto edge = [](const Node& from, const Node& to) {
            return "\"" + toStr<BaseData>(*from) + "\" -> \"" + toStr<BaseData>(*to) + "\"\n";
        };
        EXPECT_NE(std::string::npos, dot.str().find(edge(root, left) + edge(left, bottom)));
        EXPECT_NE(std::string::npos, dot.str().find(edge(root, right) + edge(right, bottom)));
    }
    EXPECT_TRUE(left->isLeafNode());
    root->resetRecursive();
    EXPECT_EQ(4, left->resets);
}

TEST(ImageData, ComputesWhatIsNotValidAndCopiesTheInside) {
    const Node data(new CountedData("data"));
    const std::vector<Rect> asked = {{2, 2, 6, 6},  {3, 3, 5, 5},   {0, 0, 4, 4}, {5, -3, 40, 6},
                                     {5, 0, 10, 6}, {20, 1, 30, 3}, {2, 2, 6, 6}};
    for (const Rect& rect : asked) data->get(rect);
    const std::vector<Rect> computed = {
        {2, 2, 6, 6}, {0, 0, 4, 4}, {5, 0, 10, 6}, {}, {2, 2, 6, 6}};
    EXPECT_EQ(computed, data->computed);
    data->get();
    data->get();
    EXPECT_EQ(6u, data->computed.size());
    EXPECT_EQ(Rect(0, 0, 10, 8), data->computed.back());
    data->resetRecursive();
    data->get();
    EXPECT_EQ(7u, data->computed.size());

    Image out;
    data->get(Rect(8, 6, 14, 20), out);
    EXPECT_EQ(Size(2, 2), out.size());
    EXPECT_EQ(9, out.data(1, 1)[0]);
    LogCapture log;
    data->get(Rect(10, 0, 13, 4), out);
    EXPECT_EQ(Size(3, 4), out.size());
    EXPECT_EQ(0, out.data(2, 3)[0]);
    EXPECT_NE(std::string::npos, log.text().find("Rect fully outside of image Rect(10, 0, 13, 4)"));
}

TEST(ImageData, SharesWhatIsSetAndTakesAnotherSize) {
    ImageData data(Size(10, 8), COLOR_MODE_MONO);
    EXPECT_EQ(toStr<BaseData>(data) +
                  ". ImageData is not set, or void compute(const KZ::Rect&) is not overloaded\n",
              assertionOf([&] { data.get(); }));
    const Image small(Size(4, 3), COLOR_MODE_BGR);
    data.set(Image(Size(7, 6), COLOR_MODE_MONO));
    data.set(small);
    EXPECT_EQ(small.data(), data.get().data());
    data.update();
    EXPECT_EQ(Rect(0, 0, 4, 3), data.rect());
    EXPECT_EQ(Size(99, 49), ImageData(Size(100, 50), COLOR_MODE_INTEGRAL).size());
}
