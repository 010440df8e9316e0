#include "model/TesselError.h"

#include <gtest/gtest.h>

#include "foundation/Errors.h"

namespace tessel {

TEST(TesselErrorTests, anErrorOfAnyKindIsShownByItsOwnSentence) {
    EXPECT_EQ(localizedDescription(std::make_exception_ptr(
                  TesselError::unsafeDisk("Detailed disk information could not be read."))),
              "The selected disk is protected: Detailed disk information could not be read.");
    EXPECT_EQ(localizedDescription(std::make_exception_ptr(posixError("os.img could not be read", 2))),
              "os.img could not be read: No such file or directory.");
}

}  // namespace tessel
