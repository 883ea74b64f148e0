# Settings of every target of this project: the language, the include root and the warnings. Warnings become errors through
# CMAKE_COMPILE_WARNING_AS_ERROR, which only the presets for development set.
function(qornetworking_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor)
endfunction()
