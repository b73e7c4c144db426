# cmake -DCATALOGUE=<file> -DCOLLECT=<command> -P catalogue.cmake, in the root: every text of the
# sources is in the catalogue, with a finished translation, and no other.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND mktemp -d OUTPUT_VARIABLE folder OUTPUT_STRIP_TRAILING_WHITESPACE)
set(copy ${folder}/catalogue.ts)
file(COPY_FILE ${CATALOGUE} ${copy})
execute_process(COMMAND ${COLLECT} ${copy} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
file(READ ${CATALOGUE} before)
file(READ ${copy} after)
file(REMOVE_RECURSE ${folder})
if(NOT before STREQUAL after)
  message(SEND_ERROR "The texts have changed: build the target update_translations")
endif()
if(after MATCHES "unfinished|<translation></translation>|<translation/>")
  message(SEND_ERROR "Some texts have no finished translation")
endif()
