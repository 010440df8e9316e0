#include <gmock/gmock.h>

#include "tests/words/Sentences.h"

namespace tessel {

using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(LinuxWordsTests, noSentenceIsMissingOrNamesAnotherSystem) {
    const auto sentences = sentencesOf(systemWords());
    EXPECT_THAT(sentences, Each(Not(IsEmpty())));
    for (const char* foreign :
         {"macOS", "App Sandbox", "System Settings", "removable-volume", "authopen", "diskutil"})
        EXPECT_THAT(sentences, Each(Not(HasSubstr(foreign))));
}

}  // namespace tessel
