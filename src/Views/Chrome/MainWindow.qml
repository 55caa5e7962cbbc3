import QtQuick
import QtQuick.Controls.Basic
import Ostrella.Chrome
import Ostrella.Controls
import Ostrella.Panel
import Ostrella.Sidebar
import Ostrella.Viewport

// The main window: the sidebar, beside it toolbar, viewport and bottom panel in one column, and the
// status bar under both.
ApplicationWindow {
    id: window

    required property WindowModel model
    // What had the keyboard before a menu took it.
    property Item editor: null
    // What full screen goes back to.
    property int visibilityBefore: Window.Windowed

    function edit(operation) {
        if (editor && typeof editor[operation] === "function")
            editor[operation]();
    }

    function change(operation) {
        if (operation === "minimize")
            showMinimized();
        else if (operation === "fullScreen" && visibility === Window.FullScreen)
            visibility = visibilityBefore;
        else if (operation === "fullScreen") {
            visibilityBefore = visibility;
            visibility = Window.FullScreen;
        } else
            visibility = visibility === Window.Maximized ? Window.Windowed : Window.Maximized;
    }

    title: model.title
    color: Theme.surfaceBase
    font: Theme.body

    // For what the toolkit draws itself where the desktop has no panels of its own.
    palette {
        window: Theme.surfaceRaised
        windowText: Theme.textPrimary
        base: Theme.surfaceSunken
        text: Theme.textPrimary
        button: Theme.over(Theme.surfaceRaised, Theme.buttonFill)
        buttonText: Theme.textPrimary
        light: Theme.over(Theme.surfaceSunken, Theme.washHover)
        midlight: Theme.over(Theme.surfaceSunken, Theme.washHover)
        mid: Theme.over(Theme.surfaceRaised, Theme.borderStrong)
        dark: Theme.textSecondary
        shadow: Theme.floatingShadow
        highlight: Theme.over(Theme.surfaceSunken, Theme.accentSubtle)
        highlightedText: Theme.textPrimary
        brightText: Theme.textPrimary
        placeholderText: Theme.textTertiary
    }

    // Larger texts take more room, as far as the screen has it.
    minimumWidth: Math.max(1200, Math.min(1200 * Theme.lengthScale, Screen.desktopAvailableWidth))
    minimumHeight: Math.max(800, Math.min(800 * Theme.lengthScale, Screen.desktopAvailableHeight))
    Component.onCompleted: {
        // Once: afterwards the size is the user's.
        width = Math.max(minimumWidth, Math.min(1440, Screen.desktopAvailableWidth));
        height = Math.max(minimumHeight, Math.min(900, Screen.desktopAvailableHeight));
    }

    onActiveFocusItemChanged: {
        if (activeFocusItem && typeof activeFocusItem.selectAll === "function")
            editor = activeFocusItem;
    }

    menuBar: MainMenuBar {
        commands: window.model.commands
        isWaiting: window.model.alertTitle !== ""
    }

    footer: StatusBar {
        model: window.model.statusBar
    }

    SplitView {
        anchors.fill: parent
        handle: SplitHandle {
            vertical: true
        }

        ParameterPanel {
            model: window.model.sidebar
            footer: window.model.footer
            SplitView.minimumWidth: 280 * Theme.lengthScale
            SplitView.preferredWidth: 320 * Theme.lengthScale
            SplitView.maximumWidth: 400 * Theme.lengthScale
        }

        Item {
            SplitView.fillWidth: true

            MainToolbar {
                id: toolbar

                commands: window.model.commands
                anchors {
                    left: parent.left
                    right: parent.right
                    top: parent.top
                }
            }

            SplitView {
                id: panes

                // What the viewport keeps of a column that is too low for both.
                readonly property real leastViewport: Math.max(0, Math.min(360, height - leastPanel - 1))
                readonly property real leastPanel: Math.max(0, Math.min(160 * Theme.lengthScale, height - 1))

                orientation: Qt.Vertical
                handle: SplitHandle {}
                anchors {
                    left: parent.left
                    right: parent.right
                    top: toolbar.bottom
                    bottom: parent.bottom
                }

                ViewportView {
                    model: window.model.viewport
                    SplitView.fillHeight: true
                    SplitView.minimumHeight: panes.leastViewport
                }

                BottomPanel {
                    model: window.model.panel
                    visible: window.model.panel.isVisible
                    SplitView.minimumHeight: panes.leastPanel
                    SplitView.preferredHeight: 228 * Theme.lengthScale
                    SplitView.maximumHeight: Math.max(panes.leastPanel, Math.min(380 * Theme.lengthScale, panes.height - panes.leastViewport - 1))
                }
            }
        }
    }

    Connections {
        target: window.model.commands

        function onEditRequested(operation) {
            window.edit(operation);
        }

        function onWindowRequested(operation) {
            window.change(operation);
        }
    }

    FileDialogs {
        files: window.model.files
    }

    BrandAlert {
        title: window.model.alertTitle
        text: window.model.alertText
        buttonText: window.model.alertButton
        secondButtonText: window.model.alertSecondButton
        visible: window.model.alertTitle !== ""
        onAnswered: isFirst => window.model.dismissAlert(isFirst)
    }
}
