#pragma once
// An editor on the scripted fake platform, with a view that keeps every surface it was shown.

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "editor.h"
#include "fakeplatform.h"

namespace skin::testing {

constexpr SkinSide Send = SkinSide::Send;
constexpr SkinSide Receive = SkinSide::Receive;

class RecordingView : public SurfaceView {
public:
    std::vector<EditorSurface> shown;
    void SurfaceChanged(const EditorSurface& surface, const SkinDocument&) override { shown.push_back(surface); }
};

class EditorTest : public ::testing::Test {
protected:
    FakePlatform platform;
    RecordingView view;
    Editor editor{platform, &view};

    const EditorSurface& surface() const { return editor.Surface(); }
    const SkinDocument& doc() const { return editor.Document(); }
    const BoxElement& box(SkinSide side, int i) const { return surface().Boxes(side).at(i); }
    const LabelElement& label(TextField f) const { return surface().Label(f); }

    // Press, one movement and release at the same point, answering the name menu with `choice`.
    void drag(SkinSide side, float x0, float y0, float x1, float y1, std::optional<AreaKind> choice) {
        platform.menuAnswers.push_back(choice);
        editor.BeginArea(side, x0, y0);
        editor.ExtendArea(side, x1, y1);
        editor.EndArea(side, x1, y1);
    }
    void drawArea(SkinSide side, AreaKind kind, float x, float y, float w, float h) {
        drag(side, x, y, x + w, y + h, kind);
    }
};

}  // namespace skin::testing
