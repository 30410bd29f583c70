#pragma once

/// A document window that tools can be cut or dragged out of, as another window sees it that
/// takes them.
class ClipboardSource
{
public:
    virtual ~ClipboardSource() = default;

    /// Items shown faint, because their tools are cut or dragged, are shown as before.
    virtual void unghostTools() = 0;
    /// The tools shown faint have arrived elsewhere: they are removed without a question.
    virtual void completeCut() = 0;
};
