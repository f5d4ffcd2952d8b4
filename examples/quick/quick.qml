import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

ApplicationWindow {
    id: window

    required property QtObject downloads
    required property string firstAddress
    property QtObject page: null
    property QtObject download: null
    readonly property bool busy: (page !== null && page.running) || (download !== null && download.running)

    function read() {
        download = null;
        page = downloads.readPage(address.text);
        page.finished.connect(function () {
            window.download = downloads.downloadBest();
            window.download.start();
        });
        page.start();
    }

    width: 480
    height: 200
    visible: true
    title: page !== null && page.title !== "" ? page.title : "Download"
    Component.onCompleted: if (firstAddress !== "") read()

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 12

        TextField {
            id: address
            Layout.fillWidth: true
            text: window.firstAddress
            placeholderText: "Address of a page"
        }
        Button {
            text: window.busy ? "Cancel" : "Download"
            onClicked: window.busy ? (window.download ? window.download : window.page).cancel() : window.read()
        }
        ProgressBar {
            Layout.fillWidth: true
            indeterminate: window.busy && (window.download === null || window.download.figures.total === 0)
            value: window.download !== null ? window.download.figures.percent / 100 : 0
        }
        Label {
            Layout.fillWidth: true
            wrapMode: Text.Wrap
            textFormat: Text.PlainText // titles come from the web
            text: window.download !== null ? window.download.errorString || window.download.filePath : ""
        }
    }
}
