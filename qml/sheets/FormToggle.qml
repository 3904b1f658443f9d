import QtQuick
import QtQuick.Templates as T
import Coinhall

// An on/off switch with its text beside it, drawn as a small lit rocker: the track
// glows in the look's accent while on. Space toggles it; `toggled` tells a user's
// change apart from a bound value. In a sheet it sits in a FormRow without a label,
// under the other fields.
T.Switch {
    id: root

    implicitWidth: leftPadding + implicitIndicatorWidth + spacing + implicitContentWidth + rightPadding
    implicitHeight: Math.max(implicitIndicatorHeight, implicitContentHeight) + topPadding + bottomPadding
    padding: 2
    spacing: Tokens.spaceM
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked

    indicator: Rectangle {
        x: root.leftPadding
        y: root.topPadding + (root.availableHeight - height) / 2
        implicitWidth: 38
        implicitHeight: 20
        radius: height / 2
        color: root.checked ? Looks.current.accent : Looks.current.bg
        border.width: root.visualFocus ? 1.5 : 1
        border.color: root.visualFocus ? Looks.current.accent2 : Looks.current.line

        Rectangle {
            x: root.checked ? parent.width - width - 3 : 3
            anchors.verticalCenter: parent.verticalCenter
            width: parent.height - 6
            height: width
            radius: width / 2
            gradient: Gradient {
                GradientStop { position: 0; color: Qt.lighter(Looks.current.panelTop, 1.6) }
                GradientStop { position: 1; color: Looks.current.panelBottom }
            }
            border.width: 1
            border.color: Qt.rgba(0, 0, 0, 0.45)

            // Slides only when the user flips it (a press or Space gives the switch the
            // focus): a sheet that opens on a switch already on shows it on at once.
            Behavior on x {
                enabled: root.activeFocus

                NumberAnimation { duration: 90 }
            }
        }
    }

    contentItem: Text {
        leftPadding: root.indicator.width + root.spacing
        text: root.text
        wrapMode: Text.WordWrap
        verticalAlignment: Text.AlignVCenter
        font.family: Tokens.textFamily
        font.weight: Font.DemiBold
        font.pointSize: Tokens.pt(Tokens.bodySize)
        color: root.enabled ? Looks.current.soft : Looks.current.muted
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
