#include "audio/mp3_choice.h"

#include "audio/audio_job.h"
#include "audio/converter.h"
#include "audio/fragments.h"
#include "audio/messages.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::audio {

void TestMp3Encoding() {
    const std::string start =
        std::string(Trim(core::profile.TrleFolder)) + LoadFragment(fragment::kTestAudioFolder);
    const auto wave =
        TheUser().OpenFile({LoadMessage(msg::kTestTitle), LoadMessage(msg::kTestFilter), start, {}});
    if (!wave || !OpenConverter()) return;
    AudioJob job;
    job.Files = {*wave};
    job.TargetFolder = AppFolder() + LoadFragment(fragment::kTestFolder);
    job.TargetKind = AudioKind::Mp3;
    if (ConvertAudioFiles(job) && !job.Converted.empty())
        OpenAudioFile(job.Converted.back().Result);
    else if (!job.Stopped)
        TellCritical(LoadMessage(msg::kTestFailed) + job.LastConversionError);
}

} // namespace kelvash::audio
