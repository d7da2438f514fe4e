#include "DataLayer.h"

#include "KZ_Assert.h"

void DataLayer::forward() {
    KZ_ASSERT_GE(top_.num(), 1);
    KZ_ASSERT_GE(top_.channels(), 1);
    KZ_ASSERT_GE(top_.width(), 1);
    KZ_ASSERT_GE(top_.height(), 1);
}
