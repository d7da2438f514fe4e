#include <gtest/gtest.h>

#include "GuardedBuffer.h"
#include "KZ_ApplyFilter.h"
#include "KZ_DotProduct.h"
#include "NnSupport.h"

using namespace testing_support;

namespace {

class DotProduct : public testing::TestWithParam<KZ::DotProductVariant> {};
class FilterRow : public testing::TestWithParam<KZ::FilterRowVariant> {};

const auto nameOf = [](const auto& info) { return std::string(info.param.name); };

}  // namespace

TEST_P(DotProduct, EveryLengthAndMisalignment) {
    std::mt19937 random(20260101);
    for (int n = 0; n <= 67; ++n)
        for (int skip = 0; skip < 4; ++skip) {
            GuardedBuffer<float> a(static_cast<size_t>(n + skip)), b(a.size());
            randomize(random, a);
            randomize(random, b);
            const float expected = dotInOrder(a.data() + skip, b.data() + skip, n, 0.3f);
            ASSERT_EQ(bits(expected),
                      bits(GetParam().run(a.data() + skip, b.data() + skip, n, 0.3f)))
                << n << " from " << skip;
            ASSERT_EQ(bits(expected),
                      bits(KZ::dotProduct(a.data() + skip, b.data() + skip, n, 0.3f)));
        }
}

// Fused with the addition, the product would leave a rest.
TEST_P(DotProduct, RoundsEachProduct) {
    const float x = 1 + 1 / 4096.0f, square = 1 + 1 / 2048.0f;  // x * x rounds to this
    const float a[16] = {-square, 0, 0, 0, 0, 0, 0, 0, x}, b[16] = {1, 0, 0, 0, 0, 0, 0, 0, x};
    EXPECT_EQ(0, GetParam().run(a, b, 16, 0));
    EXPECT_EQ(0, GetParam().run(&x, &x, 1, -square));
}

INSTANTIATE_TEST_SUITE_P(Variants, DotProduct, testing::ValuesIn(KZ::dotProductVariants()), nameOf);

// Source and target end at an unreadable page.
TEST_P(FilterRow, SumsInTheFiltersOrder) {
    std::mt19937 random(20260103);
    for (const KZ::Size& size : {KZ::Size(3, 3), {1, 1}, {3, 2}, {1, 3}, {2, 5}, {5, 4}})
        for (int stride = 1; stride <= 3; ++stride)
            for (int count = 1; count <= 21; ++count) {
                const int span = (count - 1) * stride + size.width;
                const int pitch = span + static_cast<int>(random() % 3);
                GuardedBuffer<float> src(static_cast<size_t>((size.height - 1) * pitch + span));
                GuardedBuffer<float> weights(static_cast<size_t>(size.area()));
                GuardedBuffer<float> dst(static_cast<size_t>(count));
                randomize(random, src);
                randomize(random, weights);
                const KZ::FilterPlane filter = {weights.data(), size.width, size.height};
                GetParam().run(src.data(), pitch, filter, 0.7f, stride, dst.data(), count);
                for (int x = 0; x < count; ++x) {
                    float sum = 0.7f;
                    for (int i = 0; i < size.area(); ++i)
                        sum += weights.data()[i] *
                               src.data()[i / size.width * pitch + x * stride + i % size.width];
                    ASSERT_EQ(bits(sum), bits(dst.data()[x]))
                        << size << " stride " << stride << " output " << x << " of " << count;
                }
            }
}

INSTANTIATE_TEST_SUITE_P(Variants, FilterRow, testing::ValuesIn(KZ::filterRowVariants()), nameOf);
