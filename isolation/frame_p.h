#ifndef QEL_ISOLATION_FRAME_P_H
#define QEL_ISOLATION_FRAME_P_H

#include <QtCore/QtEndian>

// A message on a stream: its length in four bytes, the highest first, then its bytes.
namespace qel::isolation {

using FrameLength = quint32;
constexpr FrameLength maximumFrameLength = 64 * 1024 * 1024;

} // namespace qel::isolation

#endif
