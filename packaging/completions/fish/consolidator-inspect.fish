# Completion of consolidator-inspect's command line for fish.

set -l commands summary kernel find at break check merge json sqlite diff verify

complete -c consolidator-inspect -n "not __fish_seen_subcommand_from $commands" -f
complete -c consolidator-inspect -n "not __fish_seen_subcommand_from $commands" -l version -d 'Show the version, and how the programs were made'
complete -c consolidator-inspect -l help -d 'Show options and commands'

complete -c consolidator-inspect -n __fish_use_subcommand -a summary -d 'Show sections, project and a table of the kernels'
complete -c consolidator-inspect -n __fish_use_subcommand -a kernel -d 'Show all of one kernel'
complete -c consolidator-inspect -n __fish_use_subcommand -a find -d 'Look for names and nets'
complete -c consolidator-inspect -n __fish_use_subcommand -a at -d 'Show what lies at a place of the device'
complete -c consolidator-inspect -n __fish_use_subcommand -a break -d 'Show where one can stop'
complete -c consolidator-inspect -n __fish_use_subcommand -a check -d 'Tell what happens to inputs'
complete -c consolidator-inspect -n __fish_use_subcommand -a merge -d 'Write the database if there is no error'
complete -c consolidator-inspect -n __fish_use_subcommand -a json -d 'Print the content as JSON'
complete -c consolidator-inspect -n __fish_use_subcommand -a sqlite -d 'Write the content as an SQLite database'
complete -c consolidator-inspect -n __fish_use_subcommand -a diff -d 'Compare two databases'
complete -c consolidator-inspect -n __fish_use_subcommand -a verify -d 'Check the file strictly'

complete -c consolidator-inspect -n '__fish_seen_subcommand_from find' -s r -l regex -d 'The pattern is a regular expression'

complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s a -l add -d 'Add to the database (default)'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s c -l create -d 'Make the database anew'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s f -l consolidated_file -rF -d 'The database to add to'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s p -l project -x -d 'The name of the project'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s d -l DWARF -rF -d 'DWARF metadata'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s h -l hierarchy -rF -d 'Hierarchy metadata of the system linker'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s k -l kernel -rF -d 'Kernel description'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s s -l hls -rF -d 'Kernel metadata of high-level synthesis'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s x -l aux -rF -d 'Auxiliary XML of high-level synthesis'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s l -l ll -rF -d 'Logic locations'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -s r -l ram -rF -d 'RAM utilization report'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from check merge' -l format -xa 'text json' -d 'How to print'

complete -c consolidator-inspect -n '__fish_seen_subcommand_from merge' -l werror -d 'Take warnings for errors'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from merge' -l keep-going -d 'Write in spite of errors'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from merge' -l dry-run -d 'Write nothing'

complete -c consolidator-inspect -n '__fish_seen_subcommand_from json' -l pretty -d 'With line breaks'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from json' -l dwarf -d 'With the bytes of the DWARF section'
complete -c consolidator-inspect -n '__fish_seen_subcommand_from json' -l section -d 'As it is stored'

complete -c consolidator-inspect -n '__fish_seen_subcommand_from sqlite' -l force -d 'Replace the file'
