# The library's sources, one a line, by subsystem folder in the order of the
# pipeline. Every build of the library compiles exactly these (the Python
# module's setup.py reads this list too), so a file added under src/ is added
# here as well.
set(MOLO_SOURCES
  # C entry points
  ${CMAKE_CURRENT_LIST_DIR}/api/c_api.cpp
  # The detector: state, colour rules, frame pipeline, decision
  ${CMAKE_CURRENT_LIST_DIR}/detector/color_table.cpp
  ${CMAKE_CURRENT_LIST_DIR}/detector/colour_rules.cpp
  ${CMAKE_CURRENT_LIST_DIR}/detector/decision.cpp
  ${CMAKE_CURRENT_LIST_DIR}/detector/entry_search.cpp
  ${CMAKE_CURRENT_LIST_DIR}/detector/execute.cpp
  ${CMAKE_CURRENT_LIST_DIR}/detector/lifecycle.cpp
  ${CMAKE_CURRENT_LIST_DIR}/detector/rejection.cpp
  ${CMAKE_CURRENT_LIST_DIR}/detector/seed_maps.cpp
  # Image preparation: row loops, downsampling, resize
  ${CMAKE_CURRENT_LIST_DIR}/prep/downsample_rows_dispatch.cpp
  ${CMAKE_CURRENT_LIST_DIR}/prep/downsample_rows_neon.cpp
  ${CMAKE_CURRENT_LIST_DIR}/prep/downsample_rows_scalar.cpp
  ${CMAKE_CURRENT_LIST_DIR}/prep/downsample_rows_sse2.cpp
  ${CMAKE_CURRENT_LIST_DIR}/prep/downsampling.cpp
  ${CMAKE_CURRENT_LIST_DIR}/prep/parallel_rows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/prep/resize.cpp
  ${CMAKE_CURRENT_LIST_DIR}/prep/row_helpers.cpp
  # Region analysis
  ${CMAKE_CURRENT_LIST_DIR}/regions/border_length.cpp
  ${CMAKE_CURRENT_LIST_DIR}/regions/check_shape.cpp
  ${CMAKE_CURRENT_LIST_DIR}/regions/connected_set.cpp
  ${CMAKE_CURRENT_LIST_DIR}/regions/fill_in_gap.cpp
  ${CMAKE_CURRENT_LIST_DIR}/regions/morphology.cpp
  ${CMAKE_CURRENT_LIST_DIR}/regions/perimeter.cpp
  # Edge, corner and line features
  ${CMAKE_CURRENT_LIST_DIR}/features/derivative.cpp
  ${CMAKE_CURRENT_LIST_DIR}/features/exponential.cpp
  ${CMAKE_CURRENT_LIST_DIR}/features/harris_corner.cpp
  ${CMAKE_CURRENT_LIST_DIR}/features/harris_hough.cpp
  ${CMAKE_CURRENT_LIST_DIR}/features/hough_line.cpp
  ${CMAKE_CURRENT_LIST_DIR}/features/line_crossing.cpp
  ${CMAKE_CURRENT_LIST_DIR}/features/sobel3.cpp
  ${CMAKE_CURRENT_LIST_DIR}/features/sobel5.cpp
  ${CMAKE_CURRENT_LIST_DIR}/features/strait_line_detect.cpp
  # Support: arrays, statistics, timing, logging, the property
  ${CMAKE_CURRENT_LIST_DIR}/support/arrays.cpp
  ${CMAKE_CURRENT_LIST_DIR}/support/log.cpp
  ${CMAKE_CURRENT_LIST_DIR}/support/property.cpp
  ${CMAKE_CURRENT_LIST_DIR}/support/statistics.cpp
  ${CMAKE_CURRENT_LIST_DIR}/support/timestamp.cpp
  # Debug image files
  ${CMAKE_CURRENT_LIST_DIR}/debug/diagnostics.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/dump_colour.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/dump_grey.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/dump_offset.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/dump_text.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/dump_writer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/read_back.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/tiff_fail.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/tiff_image.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/tiff_reader.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/tiff_writer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/debug/yuv_to_rgb.cpp
)
