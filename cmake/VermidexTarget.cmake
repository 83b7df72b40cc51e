# vermidex_set_up_target(TARGET)
#
# Gives a target of this project its language, warnings and sanitizers.
function(vermidex_set_up_target target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)

    # No fused multiply-add: the numbers of a drawing are the same on every machine.
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -ffp-contract=off
        $<$<BOOL:${VERMIDEX_WERROR}>:-Werror>
    )

    if(VERMIDEX_SANITIZE)
        target_compile_options(${target} PUBLIC
            -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
        )
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
endfunction()

# vermidex_precompile(TARGET HEADER...)
#
# Where VERMIDEX_PCH is on, precompiles what most sources include, and HEADER... on top. Sources
# include what they use all the same: other builds, `./dev lint` among them, go without.
function(vermidex_precompile target)
    if(VERMIDEX_PCH)
        target_precompile_headers(${target} PRIVATE
            <QHash> <QList> <QObject> <QPointF> <QSqlQuery> <QString> <QStringList> <QVariant>
            <algorithm> <cmath> <functional> <memory> <optional> <utility>
            ${ARGN}
        )
    endif()
endfunction()
