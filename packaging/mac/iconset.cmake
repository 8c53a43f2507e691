# The icon in the sizes that macOS asks for, in its grid: the plate takes 824 of 1024 points.
set(ICONSET ${CMAKE_CURRENT_BINARY_DIR}/Vantle.iconset)
file(MAKE_DIRECTORY ${ICONSET})
set(paths "")
foreach(size 16 32 128 256 512)
  list(APPEND paths ${ICONSET}/icon_${size}x${size}.png ${ICONSET}/icon_${size}x${size}@2x.png)
endforeach()
vantle_icons(iconset INSET 0.04375 PICTURES ${paths})
