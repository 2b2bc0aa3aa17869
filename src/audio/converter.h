// The user's batches of audio files: decoding mp3 files, encoding waves, changing waves.
//
// Dialog_ConvertAudio works on a Converter while it is open; its buttons call what stands here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audio/wave_header.h"

namespace kelvash::audio {

enum class ConverterMode { DecodeMp3, EncodeWave, ConvertWave };

struct Converter {
    ConverterMode Mode = ConverterMode::DecodeMp3;
    std::vector<std::string> Files{}; // full paths, in the order of adding
    std::string TargetFolder{};
    AudioKind WaveTarget = AudioKind::Standard; // of the three waves
};

// What the form is called for: the extension of its files, with the dot.
std::string SourceExtension(ConverterMode mode);

// Make the converter's temporary folder empty, and remove it. False, after a message, if it can't be made.
[[nodiscard]] bool OpenConverter();
void CloseConverter();

// Ask for a file, or a folder of them, and take what isn't in the list yet.
void AddFile(Converter& converter);
void AddFolder(Converter& converter);
// Files that were dropped; those of another extension are passed over.
void AddFiles(Converter& converter, const std::vector<std::string>& files);
// Asks, and takes a file out of the list; an index outside it is told.
void RemoveFile(Converter& converter, std::int64_t index);
// Asks for the folder that results go to.
void ChooseTargetFolder(Converter& converter);
// "3 files (1.5 Mb)".
std::string TotalText(const Converter& converter);

// Converts all files; mp3_settings are those of an encoding. True if the form is to be closed.
bool ConvertFiles(Converter& converter);

// Opens a file of the list with the desktop's program.
void OpenAudioFile(const std::string& path);

} // namespace kelvash::audio
