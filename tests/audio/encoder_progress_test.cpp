#include "audio/encoder_progress.h"

#include <gtest/gtest.h>

#include "support/foundation_home.h"

namespace kelvash::audio {
namespace {

class EncoderLines : public test::FoundationHome {
  protected:
    bool stop = true;
};

TEST_F(EncoderLines, TimesOfMadplayCountAgainstTheLength) {
    LineProgress progress{{}, 200};
    GestioneMadPlay(progress, " 00:01:40 Layer III, 128 kbps", false, stop);
    EXPECT_EQ(user.last_percent, 50);
    GestioneMadPlay(progress, " 00:02:5", false, stop); // too short
    GestioneMadPlay(progress, "100:02:50", false, stop);
    EXPECT_EQ(user.last_percent, 85);
    GestioneMadPlay(progress, "MPEG Audio Decoder", false, stop);
    EXPECT_EQ(user.last_percent, 85);
}

TEST_F(EncoderLines, PercentagesOfLameAreTaken) {
    LineProgress progress{{}, 0};
    GestioneLame(progress, "   400/1234   (33%)|    0:01/    0:03", false, stop);
    EXPECT_EQ(user.last_percent, 33);
    GestioneLame(progress, "(no number)", false, stop);
    GestioneLame(progress, "50%)", false, stop);
    EXPECT_EQ(user.last_percent, 33);
}

TEST_F(EncoderLines, ResettingEmptiesCaptionAndBar) {
    LineProgress progress{{}, 4};
    for (const auto manage : {GestioneMadPlay, GestioneLame}) {
        GestioneLame(progress, "(50%)", false, stop);
        EXPECT_EQ(user.last_percent, 50);
        user.stop = true;
        manage(progress, "(50%)", true, stop);
        user.stop = false;
        EXPECT_FALSE(stop);
        EXPECT_EQ(user.last_percent, 0);
        EXPECT_EQ(user.Shown().back(), "");
    }
}

} // namespace
} // namespace kelvash::audio
