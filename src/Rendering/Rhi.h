#pragma once

// The one place that includes Qt's rendering hardware interface, which moved and became
// half-public with Qt 6.6. Whoever includes this header is tied to one minor release of Qt.

#if __has_include(<rhi/qrhi.h>)

#include <rhi/qrhi.h>
#include <rhi/qshader.h>

#else

#include <QtGui/private/qrhi_p.h>
#include <QtGui/private/qrhinull_p.h>
#include <QtGui/private/qshader_p.h>
#include <QtGui/private/qshaderdescription_p.h>
#if QT_CONFIG(opengl)
#include <QtGui/private/qrhigles2_p.h>
#endif
#if QT_CONFIG(vulkan)
#include <QtGui/private/qrhivulkan_p.h>
#endif
#if defined(Q_OS_MACOS)
#include <QtGui/private/qrhimetal_p.h>
#endif

#endif
