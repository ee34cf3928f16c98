#pragma once

#include <QtGui/QImage>
#include <memory>

class LxBuffer;
class QWidget;
class ShownFrame;

/// One frame, to be saved as the picture that is seen (PNG) or as the bytes that the camera sent (raw).
class Snapshot
{
public:
    /// Takes the frame that is shown at this moment; later ones do not change it.
    explicit Snapshot(ShownFrame &aFrame);

    bool IsEmpty() const { return mPicture.isNull(); }
    /// A name that says size and format, without ending: a raw file says nothing of them itself.
    QString SuggestedName() const;
    /// Empty when it worked, else what went wrong.
    QString SavePicture(const QString &aFile) const;
    /// The image as it was sent, with the padding of its lines; of H.264 the access unit.
    QString SaveRaw(const QString &aFile) const;
    /// Asks for a file and saves; says why when that fails.
    void Save(QWidget *aParent) const;

private:
    std::shared_ptr<const LxBuffer> mFrame;
    QImage mPicture;
};
