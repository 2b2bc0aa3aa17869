#include "swap/compression.h"

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/picture.h"
#include "swap/zl_file.h"

namespace kelvash::swap {

namespace {

// Where a packed file is unpacked to; nothing if its name without ".zl" is none that a file can have.
std::optional<std::string> UnpackedPath(const std::string& folder, const std::string& zl_path) {
    const std::optional<PlainName> name = PlainName::From(StripExtension(FileNameOf(zl_path)));
    return name ? std::optional(PathIn(folder, *name)) : std::nullopt;
}

void TellDecompressFailure(MessageId id, const std::string& name) {
    TellCritical(LoadMessage(id, {}) + name);
}

// Empties a temporary folder of the application's folder, or makes it.
std::string FreshFolder(MessageId name) {
    const std::string folder = AppFolder() + LoadMessage(name, {});
    DeleteFiles(folder, "*");
    CreateFolder(folder);
    return folder;
}

// The temporary copy of a level without its compressed files, which would only be thrown away again.
std::string CopyPlainFiles(const std::string& folder) {
    const std::string temp = FreshFolder(MessageId::kTempDecFolder);
    for (const std::string& file : ListFiles(folder, "*"))
        if (!MatchesMask(FileNameOf(file), LoadMessage(MessageId::kZlMask, {})))
            CopyFile(file, temp + "\\" + FileNameOf(file));
    return temp;
}

bool UnpackFiles(const std::vector<std::string>& packed, const std::string& folder, std::string& temp) {
    ProgressDialog dialog(BarPlace::ZipDialog, LoadMessage(MessageId::kDecompressCaption, {}));
    dialog.Label(LoadMessage(MessageId::kDecompressCopying, {}));
    temp = CopyPlainFiles(folder);
    double done = 0;
    for (const std::string& file : packed) {
        dialog.Label(LoadMessage(MessageId::kUnzippingFile, {FileNameOf(file)}));
        TheUser().PumpEvents();
        const std::optional<std::string> target = UnpackedPath(temp, file);
        if (!target || !DecompressFile(file, *target)) {
            TellDecompressFailure(MessageId::kDecompressFailed, FileNameOf(file));
            return false;
        }
        ProgressPercent(dialog.bar, ++done, static_cast<double>(packed.size()));
    }
    return true;
}

} // namespace

std::string CopyToTempDec(const std::string& folder) {
    const std::string temp = FreshFolder(MessageId::kTempDecFolder);
    CopyFiles(folder, temp, Existing::Replace, "*");
    return temp;
}

bool DecompressLevelFiles(const std::string& folder, std::string& temp, bool decode_mp3) {
    temp.clear();
    const std::vector<std::string> packed = ListFiles(folder, LoadMessage(MessageId::kZlMask, {}));
    if (!packed.empty() && !UnpackFiles(packed, folder, temp)) return false;
    const std::string current = temp.empty() ? folder : temp;
    if (decode_mp3 && AnyFile(current, LoadMessage(MessageId::kMp3Mask, {}))) {
        // No decoder is built in: the level stays as it is.
        TellCritical(LoadMessage(MessageId::kConversionFailed, {}) +
                     LoadMessage(MessageId::kNoMp3Decoder, {}));
        if (!temp.empty()) RemoveFolder(temp);
        return false;
    }
    const std::string picture = LoadMessage(MessageId::kLoadJpg, {});
    if (FileExists(folder + picture)) {
        if (temp.empty()) temp = CopyToTempDec(folder);
        // A picture that can't be converted isn't told: the game shows its own then.
        if (JpegToBitmap(temp + picture, temp + LoadMessage(MessageId::kLoadBmp, {})))
            DeleteFile(temp + picture);
    }
    return true;
}

std::string DecompressOneFile(const std::string& path, bool show_dialog) {
    const std::string folder = FreshFolder(MessageId::kTempFolder);
    const std::optional<std::string> target = UnpackedPath(folder, path);
    if (show_dialog) TheUser().OpenProgress(BarPlace::ZipDialog, LoadMessage(MessageId::kOneFileCaption, {}));
    const bool unpacked = target && DecompressFile(path, *target);
    if (show_dialog) TheUser().CloseProgress(BarPlace::ZipDialog);
    if (unpacked) return *target;
    TellDecompressFailure(MessageId::kOneFileFailed, FileNameOf(path));
    return {};
}

} // namespace kelvash::swap
