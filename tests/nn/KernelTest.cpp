#include <gtest/gtest.h>

#include "GuardedBuffer.h"
#include "KZ_ApplyFilter.h"
#include "KZ_DotProduct.h"
#include "NnSupport.h"

using namespace testing_support;

namespace {

class DotProduct : public testing::TestWithParam<KZ::DotProductVariant> {};
class FilterRow : public testing::TestWithParam<KZ::FilterRowVariant> {};

template <typename Info>
std::string variantName(const Info& info) {
    return info.param.name;
}

}  // namespace

// Worked by hand: each row goes wrong in one order that is not the contract's.
TEST_P(DotProduct, KnownSums) {
    struct Row {
        const char* what;
        Floats a, b;
        float init, expected;
    };
    const float x = 1 + 1 / 4096.0f, square = 1 + 1 / 2048.0f;  // x * x rounds to this
    const Row rows[] = {
        {"empty keeps init", {}, {}, 3, 3},
        {"tail after init, one by one", {3, 3, 3}, {1, 1, 1}, 1e8f, 1e8f},
        {"lanes 0 and 2 first", {1e8f, 1, -1e8f, 1, 0, 0, 0, 0}, Floats(8, 1), 0, 2},
        {"init after the lanes", Floats(8, 3), Floats(8, 1), 1e8f, 100000024.0f},
        {"eight lanes, not four",
         {1e8f, 0, 0, 0, 1, 0, 0, 0, -1e8f, 0, 0, 0, 1, 0, 0, 0},
         Floats(16, 1),
         0,
         2},
        {"tail behind a block", {0, 0, 0, 0, 0, 0, 0, 0, 3, 3}, Floats(10, 1), 1e8f, 1e8f},
        {"a product is rounded: tail", {x}, {x}, -square, 0},
        {"a product is rounded: block",
         {-square, 0, 0, 0, 0, 0, 0, 0, x, 0, 0, 0, 0, 0, 0, 0},
         {1, 0, 0, 0, 0, 0, 0, 0, x, 0, 0, 0, 0, 0, 0, 0},
         0,
         0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const int n = static_cast<int>(row.a.size());
        EXPECT_EQ(row.expected, GetParam().run(row.a.data(), row.b.data(), n, row.init));
        EXPECT_EQ(row.expected, KZ::dotProduct(row.a.data(), row.b.data(), n, row.init));
    }
}

TEST_P(DotProduct, EveryLengthAndMisalignment) {
    std::mt19937 random(20260101);
    for (int n = 0; n <= 67; ++n) {
        for (int skip = 0; skip < 4; ++skip) {
            GuardedBuffer<float> a(static_cast<size_t>(n + skip)), b(a.size());
            for (float& value : a) value = randomFloat(random);
            for (float& value : b) value = randomFloat(random);
            ASSERT_EQ(bits(dotInOrder(a.data() + skip, b.data() + skip, n, 0.3f)),
                      bits(GetParam().run(a.data() + skip, b.data() + skip, n, 0.3f)))
                << n << " from " << skip;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Variants, DotProduct, testing::ValuesIn(KZ::dotProductVariants()),
                         variantName<testing::TestParamInfo<KZ::DotProductVariant>>);

// Source and target end at an unreadable page.
TEST_P(FilterRow, SumsInTheFiltersOrder) {
    std::mt19937 random(20260103);
    const KZ::Size filters[] = {{3, 3}, {1, 1}, {3, 2}, {1, 3}, {2, 5}, {5, 4}};
    for (const KZ::Size& size : filters) {
        for (int stride = 1; stride <= 3; ++stride) {
            for (int count = 1; count <= 21; ++count) {
                const int span = (count - 1) * stride + size.width;
                const int pitch = span + static_cast<int>(random() % 3);
                GuardedBuffer<float> src(static_cast<size_t>((size.height - 1) * pitch + span));
                GuardedBuffer<float> weights(static_cast<size_t>(size.area()));
                GuardedBuffer<float> dst(static_cast<size_t>(count));
                for (float& value : src) value = randomFloat(random);
                for (float& value : weights) value = randomFloat(random);
                const KZ::FilterPlane filter = {weights.data(), size.width, size.height};
                GetParam().run(src.data(), pitch, filter, 0.7f, stride, dst.data(), count);
                for (int x = 0; x < count; ++x) {
                    float sum = 0.7f;
                    for (int i = 0; i < size.area(); ++i) {
                        const int column = x * stride + i % size.width;
                        sum += weights.data()[i] * src.data()[i / size.width * pitch + column];
                    }
                    ASSERT_EQ(bits(sum), bits(dst.data()[x]))
                        << size << " stride " << stride << " output " << x << " of " << count;
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Variants, FilterRow, testing::ValuesIn(KZ::filterRowVariants()),
                         variantName<testing::TestParamInfo<KZ::FilterRowVariant>>);
