# Completion of consolidator's command line for fish.

complete -c consolidator -f
complete -c consolidator -s f -l consolidated_file -rF -d 'The database to add to or create'
complete -c consolidator -s a -l add -d 'Add to what the file holds'
complete -c consolidator -s c -l create -d 'Start the file afresh'
complete -c consolidator -s p -l project -x -d 'The name of the project'
complete -c consolidator -s d -l DWARF -rF -d 'DWARF metadata'
complete -c consolidator -s h -l hierarchy -rF -d 'Hierarchy metadata of the system linker'
complete -c consolidator -s k -l kernel -rF -d 'Kernel description'
complete -c consolidator -s s -l hls -rF -d 'Kernel metadata of high-level synthesis'
complete -c consolidator -s x -l aux -rF -d 'Auxiliary XML of high-level synthesis'
complete -c consolidator -s l -l ll -rF -d 'Logic locations'
complete -c consolidator -s r -l ram -rF -d 'RAM utilization report'
complete -c consolidator -s u -l dump-dwarf -rF -d 'Copy the DWARF section to a file'
complete -c consolidator -s j -l dump-json -rF -d 'Copy the JSON section to a file'
complete -c consolidator -l help -d 'Show the options'
complete -c consolidator -s v -l version -d 'Show the versions of the file formats'
