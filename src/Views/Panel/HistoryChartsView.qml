import QtQuick
import Ostrella.Controls
import Ostrella.Panel

// Residuals and force coefficients side by side, or what will stand here.
Item {
    id: charts

    required property BottomPanelModel model

    Column {
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 2 * Theme.edge)
        spacing: 8
        visible: !charts.model.hasData

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: charts.model.emptySymbol
            size: 28 * Theme.lengthScale
            color: Theme.textTertiary
        }

        Text {
            width: Math.min(implicitWidth, charts.width - 2 * Theme.edge)
            anchors.horizontalCenter: parent.horizontalCenter
            text: charts.model.emptyText
            font: Theme.body
            color: Theme.textTertiary
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            textFormat: Text.PlainText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    ConvergenceChart {
        id: residuals

        width: Math.floor(parent.width / 2)
        height: parent.height
        visible: charts.model.hasData
        chart: charts.model.residuals
    }

    Hairline {
        anchors.right: residuals.right
        height: parent.height
        visible: charts.model.hasData
    }

    ConvergenceChart {
        x: residuals.width
        width: parent.width - x
        height: parent.height
        visible: charts.model.hasData
        chart: charts.model.coefficients
    }
}
