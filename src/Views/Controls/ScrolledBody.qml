import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// The content of a window that may be taller than the room for it: then it scrolls, with a bar.
Flickable {
    id: body

    // The arrows and the page keys scroll, which is for windows where nothing else wants them.
    property bool takesKeys: false

    // Brings a part of the content into sight.
    function show(item: Item) {
        let over = item;
        while (over && over !== contentItem)
            over = over.parent;
        if (!over)
            return;
        const margin = 20;
        const top = contentItem.mapFromItem(item, 0, 0).y - margin;
        const bottom = top + item.height + 2 * margin;
        if (top < contentY)
            scrollTo(top);
        else if (bottom > contentY + height)
            scrollTo(bottom - height);
    }
    function scrollTo(top: real) {
        contentY = Math.max(0, Math.min(contentHeight - height, top));
    }

    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height
    clip: interactive
    T.ScrollBar.vertical: BrandScrollBar {
        policy: body.interactive ? T.ScrollBar.AsNeeded : T.ScrollBar.AlwaysOff
    }

    component ScrollKey: Shortcut {
        enabled: body.takesKeys && body.interactive
    }

    ScrollKey {
        sequence: "Up"
        onActivated: body.scrollTo(body.contentY - Theme.settingsRowHeight)
    }
    ScrollKey {
        sequence: "Down"
        onActivated: body.scrollTo(body.contentY + Theme.settingsRowHeight)
    }
    ScrollKey {
        sequence: "PgUp"
        onActivated: body.scrollTo(body.contentY - body.height + Theme.settingsRowHeight)
    }
    ScrollKey {
        sequence: "PgDown"
        onActivated: body.scrollTo(body.contentY + body.height - Theme.settingsRowHeight)
    }
    ScrollKey {
        sequence: "Home"
        onActivated: body.scrollTo(0)
    }
    ScrollKey {
        sequence: "End"
        onActivated: body.scrollTo(body.contentHeight)
    }
}
