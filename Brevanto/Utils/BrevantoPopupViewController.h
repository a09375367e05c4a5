#pragma once

#include "Platform/Interface/ViewController.h"

#include <memory>

// Shows a controller's view as a centred popup over everything that contains the presenting controller, and takes it
// away again. A presenter shows one popup at a time; the popup goes with its presenter. The popup's controller gets the
// four appearance calls and stays out of the chain of containment: turning the window resizes its view by its
// autoresizing mask alone. For the main thread only.
namespace BrevantoPopupViewController
{

// 1 slides from and to the top edge; every other value fades.
inline constexpr int slideAnimation = 1;

inline constexpr int sourceViewTag = 1235810;
inline constexpr int popupViewTag = 1235820;
inline constexpr int overlayViewTag = 1235830;

// Keeps the popup with the presenter until the next one replaces it, and shows its view.
void presentPopupViewController(Platform::ViewController *presenter,
                                const std::shared_ptr<Platform::ViewController> &popup, int animationType);
// Showing a view that is shown already does nothing. A view without an owner goes with the popup.
void presentPopupView(Platform::ViewController *presenter, Platform::View *popupView, int animationType);

// Takes away the popup over the presenter's containment chain. Without one the controller kept is still told of its
// disappearance; while the popup is on its way out nothing happens, and presenting it anew doesn't either.
void dismissPopupViewControllerWithanimationType(Platform::ViewController *presenter, int animationType);

// Whether a popup of the presenter is on the screen, and not on its way out.
bool isPopupShown(const Platform::ViewController *presenter);
// The controller last presented; null when there was none.
Platform::ViewController *zovra_popupViewController(const Platform::ViewController *presenter);
// The dark view behind the popup; null while no popup is shown.
Platform::View *zovra_popupBackgroundView(const Platform::ViewController *presenter);

// The view of the root of the presenter's containment chain.
Platform::View *topView(Platform::ViewController *presenter);

} // namespace BrevantoPopupViewController
