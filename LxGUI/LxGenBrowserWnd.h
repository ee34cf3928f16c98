#pragma once

#include "LxGUI/LxWnd.h"
#include "LxGenICam/LxGenTypes.h"

class LxGenParameter;
class LxGenParameterArray;
class LxPropertyList;

/// How a browser keeps the values that it shows up to date.
enum LxGenRefresh : uint32_t
{
    LxGenRefreshPolling = 0,    ///< Every feature once, then what LxGenParameterArray::Poll() reports, every 100 ms.
    LxGenRefreshAutomatic = 1,  ///< The features on screen, every 2 seconds.
    LxGenRefreshManual = 2,     ///< Only when the user or the host asks.
};

/// Shows the features of a device in a tree or a list, lets the user search and edit them and keeps them up to date.
///
/// In the automatic and the polling mode a thread of the window reads the device; the windows of the application stay
/// responsive while it does. All operations are called on the GUI thread. Those that take the features away or show
/// them anew wait for that thread and process events of the application meanwhile.
/// @thread{GUI}
class LXGUI_API LxGenBrowserWnd : public LxWnd
{
public:
    LxGenBrowserWnd();
    ~LxGenBrowserWnd() override;

    /// Shows the features of a device from now on.
    /// @param aParameters not owned; it must stay valid until another array or null is set or the window is destroyed.
    ///        Null (the default) empties the window; when the call returns the array is no longer used.
    /// @thread{GUI}
    void SetGenParameterArray(LxGenParameterArray *aParameters);

    /// Up to which level features are shown; Beginner from the start. Takes effect when the features are shown anew.
    /// @return OK; a value that is no level is ignored.
    /// @thread{GUI}
    LxResult SetVisibility(LxGenVisibility aVisibility);
    /// The level that was set or that the user chose.
    /// @thread{GUI}
    LxGenVisibility GetVisibility();

    /// Automatic from the start. Another mode shows the features anew.
    /// @return OK; a value that is no mode works like the automatic one.
    /// @thread{GUI}
    LxResult SetRefreshMode(LxGenRefresh aMode);
    /// The mode that was set or that the user chose.
    /// @thread{GUI}
    LxGenRefresh GetRefreshMode();

    /// Reads every shown feature, in any mode.
    /// @thread{GUI}
    void Refresh();

    /// Adds the options to a list, as the properties "Visibility" ("Beginner", "Expert", "Guru", "Invisible"), "Names"
    /// ("FeatureNames", "DisplayNames"), "View" ("Tree", "AlphabeticalList") and "Refresh" ("PollingRefresh",
    /// "AutoRefresh", "ManualRefresh").
    /// @return OK.
    /// @thread{GUI}
    LxResult Save(LxPropertyList &aList);
    /// Takes the options from a list. A property that is missing leaves its option; unknown values mean Beginner,
    /// feature names, tree and automatic. The view is not taken while display names are shown.
    /// @return OK.
    /// @thread{GUI}
    LxResult Load(LxPropertyList &aList);

    /// Always false: no operation of the window counts as a change. For hosts that keep a flag of their own.
    /// @thread{GUI}
    bool HasChanged();
    /// Does nothing.
    /// @thread{GUI}
    void ResetChanged();

    /// Asked on the GUI thread for every feature that is about to be shown; false hides it. Must not call the window.
    /// @thread{called on the GUI thread}
    virtual bool IsParameterDisplayed(LxGenParameter *aParameter);
};
