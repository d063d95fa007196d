// What a component view tells people who cannot see it: its rows as check boxes of a list.
#pragma once

#include <windows.h>

struct ComponentView;

namespace vh {

// Answers WM_GETOBJECT for the client area; false for another object, or where the system has no accessibility.
bool AnswerAccessible(ComponentView& view, WPARAM wparam, LPARAM lparam, LRESULT& answer);

} // namespace vh
