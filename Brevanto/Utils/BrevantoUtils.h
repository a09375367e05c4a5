#pragma once

#include "Platform/Graphics/Image.h"
#include "Platform/Interface/ActivityIndicator.h"
#include "Platform/Interface/AlertController.h"

#include <memory>

// The look that the SDK's screens share, and small routines that several of them use. For the main thread only.
class BrevantoUtils
{
public:
    // Alerts with the one button "OK", which does nothing. The caller presents them.
    static std::unique_ptr<Platform::AlertController> getAlertController(const QString &title, const QString &message);
    static std::unique_ptr<Platform::AlertController> getNoNetworkAlert();
    static std::unique_ptr<Platform::AlertController> getSomethingWentWrongAlert();

    // A view has one spinner at most, in its middle and on top.
    static constexpr int spinnerTag = 10203040;
    static void addSpinnerToView(Platform::View *view, Platform::ActivityIndicatorStyle style);
    static void removeSpinnerFromView(Platform::View *view);

    // Server text with "<br>" as its only line break, without blank lines and doubled spaces. Null for null.
    static QString stringByRemovingExtraWhiteSpaces(const QString &string);

    // Sets the appearance that navigation bars start from.
    static void customizeNavBarThroughOutApp();
    // Styles one screen's bar. The left button, back or else close, invokes the controller's navBarBackButtonAction(),
    // the info button its navBarInfoButtonAction(); both are to be invokable by name.
    static void customizeNavBarFor(Platform::ViewController *controller, const QString &title, bool customBackButton,
                                   bool closeButton, bool infoButton);

    // Icons of 27 x 27 pixels.
    static Platform::Image closeCGImageRef();
    static Platform::Image backArrowCGImageRef();
    static Platform::Image forwardArrowCGImageRef();
    // The empty bitmap that the icons are drawn on: 8 bits per component, RGB, alpha premultiplied and last.
    static QImage getContextRef();

    static bool isAppLoadedOnce();
    // Written to the host application's settings at once.
    static void setIsAppLoadedOnce(bool isLoaded);
};
