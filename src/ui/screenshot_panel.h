// The page of the screenshots in the main form, and the commands on them: thin calls of the logic.
//
// Two pictures are shown at a time; commands are about the selected one, which a click or the keyboard's
// focus chooses.
#pragma once

#include <QObject>
#include <string>

#include "companion/shot_pages.h"

namespace kelvash::program {
struct LevelView;
} // namespace kelvash::program

namespace kelvash::ui {

class PictureView;
class Principale;

class ScreenshotPanel final : public QObject {
    Q_OBJECT

  public:
    // Works on the form's own controls, which are laid out already.
    explicit ScreenshotPanel(Principale& window);

    // A level's pictures, from the first pair on, or from the one that is shown.
    void ShowLevel(const program::LevelView& level, bool keep_image);
    // The pair that begins with a picture, by its number in the level.
    void ShowFrom(std::size_t first);
    void ShowLast();
    // The pair in which a picture is, which is selected; all stays where the level doesn't have it.
    void ShowPairOf(const std::string& path);
    // Selects the next picture or the one before, on the next page if need be. False at the end.
    bool MoveCursor(int step);
    const companion::ShotPages& Pages() const { return pages_; }

    void Add();
    void OpenEditor() const;
    void CopyPath() const;
    void CopyImage() const;
    void ShowProperty() const;
    void Delete();
    void Rename();
    void Resize();
    void Save();
    void Mail() const;
    void Zoom() const;

  private:
    void Draw();
    void DrawPicture(PictureView* view, std::size_t index) const;
    void KeepFocus();
    void SelectSide(int side);
    bool TakeKey(int key);
    bool eventFilter(QObject* watched, QEvent* event) override;

    Principale& window_;
    companion::ShotPages pages_;
    std::string hint_; // what stands in the place of the first picture; empty for the default one
};

} // namespace kelvash::ui
