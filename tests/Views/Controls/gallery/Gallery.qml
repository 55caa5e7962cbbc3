import QtQuick
import Ostrella.Controls

// The sheet of controls. What only a pointer or the keyboard brings about, the program brings about
// for the items named "hover" and "focus".
Rectangle {
    id: sheet

    width: 1440
    height: 900
    color: Theme.surfaceBase

    SectionLabel { x: 32; y: 28; text: "BUTTONS" }
    Row {
        x: 32; y: 54; spacing: 12
        Sample { caption: "normal"; BrandButton { text: "Orient…" } }
        Sample { caption: "hover"; BrandButton { objectName: "hover"; text: "Orient…" } }
        Sample { caption: "pressed"; BrandButton { down: true; text: "Orient…" } }
        Sample { caption: "focus"; BrandButton { objectName: "focus"; text: "Orient…" } }
        Sample { caption: "disabled"; BrandButton { enabled: false; text: "Orient…" } }
    }
    Row {
        x: 32; y: 114; spacing: 12
        Sample { caption: "normal"; BrandButton { kind: "primary"; text: "Done" } }
        Sample { caption: "hover"; BrandButton { kind: "primary"; objectName: "hover"; text: "Done" } }
        Sample { caption: "pressed"; BrandButton { kind: "primary"; down: true; text: "Done" } }
        Sample { caption: "focus"; BrandButton { kind: "primary"; objectName: "focus"; text: "Done" } }
        Sample { caption: "disabled"; BrandButton { kind: "primary"; enabled: false; text: "Done" } }
    }
    Row {
        x: 32; y: 174; spacing: 12
        Sample { caption: "normal"; BrandButton { kind: "destructive"; text: "Delete" } }
        Sample { caption: "hover"; BrandButton { kind: "destructive"; objectName: "hover"; text: "Delete" } }
        Sample { caption: "pressed"; BrandButton { kind: "destructive"; down: true; text: "Delete" } }
        Sample { caption: "focus"; BrandButton { kind: "destructive"; objectName: "focus"; text: "Delete" } }
        Sample { caption: "disabled"; BrandButton { kind: "destructive"; enabled: false; text: "Delete" } }
    }

    SectionLabel { x: 32; y: 248; text: "RUN" }
    Grid {
        x: 32; y: 274; columns: 2; columnSpacing: 12; rowSpacing: 12
        Sample { caption: "normal"; HeroButton { width: 200; text: "Run Simulation" } }
        Sample { caption: "hover"; HeroButton { objectName: "hover"; width: 200; text: "Run Simulation" } }
        Sample { caption: "pressed"; HeroButton { down: true; width: 200; text: "Run Simulation" } }
        Sample { caption: "disabled"; HeroButton { enabled: false; width: 200; text: "Run Simulation" } }
    }

    SectionLabel { x: 32; y: 417; text: "LINK, KEY CAP, STATUS DOT" }
    Row {
        x: 32; y: 442; spacing: 18; height: 28
        LinkButton { anchors.verticalCenter: parent.verticalCenter; text: "Acknowledgements" }
        KeyCap { anchors.verticalCenter: parent.verticalCenter; keys: "⌘R" }
        KeyCap { anchors.verticalCenter: parent.verticalCenter; keys: "↩" }
        BrandButton { kind: "primary"; text: "Done"; keyCap: "↩" }
        StatusDot { anchors.verticalCenter: parent.verticalCenter }
        StatusDot { anchors.verticalCenter: parent.verticalCenter; color: Theme.statusSuccess }
        StatusDot { anchors.verticalCenter: parent.verticalCenter; color: Theme.accentPrimary }
        StatusDot { anchors.verticalCenter: parent.verticalCenter; color: Theme.statusWarning }
        StatusDot { anchors.verticalCenter: parent.verticalCenter; color: Theme.statusError }
    }

    SectionLabel { x: 536; y: 28; text: "NUMBER FIELD" }
    Row {
        x: 536; y: 54; spacing: 12
        Sample { caption: "normal"; SidebarNumberField { value: 50; to: 500; unit: "m/s" } }
        Sample { caption: "focus"; SidebarNumberField { objectName: "focus"; value: 50; to: 500; unit: "m/s" } }
        Sample { caption: "invalid"; SidebarNumberField { objectName: "invalid"; value: 50; to: 500; unit: "m/s" } }
        Sample { caption: "disabled"; SidebarNumberField { enabled: false; value: 50; to: 500; unit: "m/s" } }
    }
    SectionLabel { x: 536; y: 128; text: "SELECT, SWITCH" }
    Row {
        x: 536; y: 154; spacing: 16
        SidebarSelect { options: ["Spalart-Allmaras (RANS)", "k-ω SST (RANS)", "Laminar"] }
        SidebarSwitch { y: 3 }
        SidebarSwitch { y: 3; isOn: true }
        SidebarSwitch { y: 3; enabled: false }
        SidebarSwitch { objectName: "focus"; y: 3 }
        SidebarSelect { objectName: "focus"; options: ["Laminar"] }
        SidebarSelect { enabled: false; options: ["Laminar"] }
    }
    SectionLabel { x: 536; y: 280; text: "SEGMENTS, CHIPS" }
    BrandSegmentedControl {
        x: 536; y: 306
        options: [{ value: "log", title: "Log" }, { value: "convergence", title: "Convergence" }]
        selection: "log"
    }
    Row {
        x: 703; y: 309; spacing: 5
        FilterChip { text: "all"; selected: true }
        FilterChip { objectName: "hover"; text: "info" }
        FilterChip { text: "warn" }
        FilterChip { text: "err" }
        FilterChip { text: "su2" }
        FilterChip { objectName: "focus"; text: "su2" }
    }
    SectionLabel { x: 536; y: 356; text: "TOOLBAR CLUSTER" }
    ToolbarCluster {
        x: 536; y: 382
        ToolbarToggle { symbol: "paintpalette"; text: "Cp"; checked: true }
        ToolbarToggle { symbol: "wind"; text: "Streams" }
        ToolbarToggle { objectName: "hover"; symbol: "tornado"; text: "Vortex" }
        ToolbarToggle { down: true; symbol: "square.grid.3x3"; text: "Grid" }
        ToolbarButton { enabled: false; symbol: "square.and.arrow.up"; text: "Export Results" }
    }
    ToolbarCluster {
        x: 880; y: 382
        ToolbarButton { objectName: "focus"; symbol: "gearshape"; text: "Settings" }
        ToolbarButton { symbol: "questionmark.circle"; text: "Help" }
    }

    // Cards lie over the viewport, which is dark in both appearances.
    Rectangle {
        x: 16; y: 484; width: 1008; height: 312; radius: 12
        color: Theme.dark ? Theme.surfaceBase : "#0B0E14"
    }
    SectionLabel { x: 32; y: 500; text: "FLOATING CARDS" }
    FloatingCard {
        x: 32; y: 526; width: 320
        topPadding: 0; bottomPadding: 8
        Column {
            width: parent.width
            Item {
                width: parent.width; height: Theme.cardHeadHeight
                SectionLabel { anchors.verticalCenter: parent.verticalCenter; text: "GEOMETRY" }
                Symbol {
                    anchors.right: parent.right; anchors.verticalCenter: parent.verticalCenter
                    name: "chevron.up"; size: 12; color: Theme.textTertiary
                }
            }
            CardRow { width: parent.width; label: "File"; value: "ahmed_25.stl" }
            CardRow { width: parent.width; label: "Facets"; value: "1 828" }
            CardRow { width: parent.width; label: "Bounding box"; value: "1.04 × 0.34 × 0.39 m" }
            CardRow { width: parent.width; label: "Orientation"; value: "0 · 0 · 0°" }
            CardRow { width: parent.width; label: "Water-tight"; value: "✓"; tone: "success" }
        }
    }
    FloatingCard {
        x: 368; y: 526; width: 280; height: Theme.cardHeadHeight
        padding: 12; topPadding: 0; bottomPadding: 0
        SectionLabel { anchors.verticalCenter: parent.verticalCenter; text: "RESULT" }
        Text {
            anchors.right: parent.right; anchors.rightMargin: 20
            anchors.verticalCenter: parent.verticalCenter
            text: "CL 0.1454 · CD 0.0389"; font: Theme.mono; color: Theme.textPrimary
        }
        Symbol {
            anchors.right: parent.right; anchors.verticalCenter: parent.verticalCenter
            name: "chevron.down"; size: 12; color: Theme.textTertiary
        }
    }
    FloatingCard {
        x: 368; y: 622; padding: 6
        Row {
            spacing: 2
            BrandButton { text: "Iso" }
            BrandButton { text: "Front" }
            Spinner { anchors.verticalCenter: parent.verticalCenter; width: 14; height: 14 }
        }
    }
    Row {
        x: 536; y: 230; spacing: 12
        BrandButton { small: true; text: "Done" }
        BrandButton { small: true; text: "Save Image"; symbol: "camera" }
        NumberText { text: "1 111 111\n8 888 888" }
        Text { text: "1 111 111\n8 888 888"; font: Theme.body; color: Theme.textSecondary }
        Text { text: "⌘ ⌥ ↩ ⁺ ≲ ω ν · × log₁₀ ✓"; font: Theme.body; color: Theme.textPrimary }
        Text { text: "⌘ ⌥ ↩ ⁺ ≲ ω ν · × log₁₀ ✓"; font: Theme.mono; color: Theme.textPrimary }
    }

    SectionLabel { x: 32; y: 808; text: "COLOURS" }
    Grid {
        x: 32; y: 834; columns: 8; columnSpacing: 0; rowSpacing: 10
        Repeater {
            model: ["surfaceBase", "surfaceRaised", "surfaceSunken", "textPrimary",
                "textSecondary", "textTertiary", "textDisabled", "accentPrimary", "accentPressed",
                "accentSubtle", "borderSubtle", "borderStrong", "statusSuccess", "statusWarning",
                "statusError", "statusInfo"]
            Row {
                required property string modelData
                spacing: 8
                width: 172
                Rectangle {
                    width: 28; height: 20; radius: 4
                    color: Theme[parent.modelData]
                    border.width: 1
                    border.color: Theme.over(color, Theme.borderStrong)
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: parent.modelData; font: Theme.keys; color: Theme.textSecondary
                }
            }
        }
    }
}
