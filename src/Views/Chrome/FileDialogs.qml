import QtQuick
import QtQuick.Dialogs
import Ostrella.Chrome

// The desktop's panels for what is asked of the user.
Item {
    id: dialogs

    required property FilePanels files

    function show(dialog) {
        dialog.title = files.title;
        dialog.currentFolder = files.folder;
        dialog.open();
    }

    Connections {
        target: dialogs.files

        function onChanged() {
            switch (dialogs.files.kind) {
            case FilePanels.Model:
                dialogs.show(model);
                break;
            case FilePanels.Folder:
                dialogs.show(folder);
                break;
            case FilePanels.Picture:
                picture.currentFile = dialogs.files.folder + "/" + encodeURIComponent(dialogs.files.suggestedName);
                dialogs.show(picture);
                break;
            default:
                model.close();
                folder.close();
                picture.close();
            }
        }
    }

    FileDialog {
        id: model

        fileMode: FileDialog.OpenFile
        nameFilters: ["STL (*.stl *.STL *.Stl)"]
        onAccepted: dialogs.files.accept(selectedFile)
        onRejected: dialogs.files.dismiss()
    }

    FolderDialog {
        id: folder

        acceptLabel: dialogs.files.prompt
        onAccepted: dialogs.files.accept(selectedFolder)
        onRejected: dialogs.files.dismiss()
    }

    FileDialog {
        id: picture

        fileMode: FileDialog.SaveFile
        acceptLabel: "Save"
        defaultSuffix: "png"
        nameFilters: ["PNG (*.png)"]
        onAccepted: dialogs.files.accept(selectedFile, dialogs.files.isDesktops(picture))
        onRejected: dialogs.files.dismiss()
    }
}
