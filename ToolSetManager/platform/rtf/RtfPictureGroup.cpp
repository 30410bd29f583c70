#include "platform/rtf/RtfPictureGroup.h"

#include "platform/rtf/RtfGroup.h"
#include "platform/rtf/RtfHex.h"
#include "platform/rtf/RtfKeywords.h"

namespace {

constexpr int largestExtent = 1 << 20; // of \picw and \pich

} // namespace

std::optional<RtfPicture> RtfPictureGroup::read(RtfTokenizer &tokenizer)
{
    RtfPicture picture;
    int scaleX = 100;
    int scaleY = 100;
    int highDigit = -1;
    RtfGroup group(tokenizer);
    while (group.next()) {
        if (group.depth > 1)
            continue;
        const RtfToken &token = group.token;
        if (token.kind == RtfToken::Binary) {
            picture.data.append(token.text);
        } else if (token.kind == RtfToken::Text) {
            RtfHex::append(picture.data, token.text, highDigit);
        } else if (token.kind == RtfToken::Word) {
            const RtfKeyword keyword = rtfKeyword(token.text);
            const int number = qBound(0, token.parameter, largestExtent);
            switch (keyword.word) {
            case RtfWord::PictureKind:
                picture.kind = static_cast<RtfPicture::Kind>(keyword.value);
                break;
            case RtfWord::PictureWidth:
                picture.extent.setWidth(number);
                break;
            case RtfWord::PictureHeight:
                picture.extent.setHeight(number);
                break;
            case RtfWord::PictureGoalWidth:
                picture.goal.setWidth(number);
                break;
            case RtfWord::PictureGoalHeight:
                picture.goal.setHeight(number);
                break;
            case RtfWord::PictureScaleX:
                scaleX = number;
                break;
            case RtfWord::PictureScaleY:
                scaleY = number;
                break;
            default:
                break;
            }
        }
    }
    if (!picture.complete(scaleX, scaleY))
        return std::nullopt;
    return picture;
}
