#include "shell/DocumentWindow.h"

#include "shell/Frame.h"

void DocumentWindow::exit(Frame &frame)
{
    const auto documents = frame.openDocuments();
    for (DocumentWindow *document : documents) {
        if (document->CleanIfDirty())
            return; // Kept: the windows closed so far stay closed.
        document->Unload();
    }
    frame.closeFrame();
}
